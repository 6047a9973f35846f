#include "payload/loader/common/console.h"

#include "payload/loader/bios/bios.h"
#include "payload/loader/bios/ports.h"

namespace omniset::loader {
namespace {

// The registers of a serial port, from its address on.
constexpr std::uint16_t kSerialData = 0;
constexpr std::uint16_t kSerialInterrupts = 1;
constexpr std::uint16_t kSerialFifo = 2;
constexpr std::uint16_t kSerialFormat = 3;
constexpr std::uint16_t kSerialModem = 4;
constexpr std::uint16_t kSerialStatus = 5;

constexpr int kSerialFifoSize = 16;

constexpr std::uint8_t kReceived = 0x01;
constexpr std::uint8_t kDamaged = 0x1E;  // lost before it, or wrong in parity, frame or length
constexpr std::uint8_t kSendable = 0x20;
constexpr std::uint8_t kAbsent = 0xFF;

constexpr std::uint8_t kEscape = 0x1B;

// The PC restarts so many of the BIOS's ticks after a failure: ten seconds.
constexpr std::uint16_t kPause = 182;

std::uint16_t serialPort;
bool isSerialOpen;
bool isAtLineStart = true;

// 115200 baud, 8 bits, no parity, 1 stop bit; the FIFOs on, no interrupts, the modem lines ready.
void openSerial() {
  isSerialOpen = true;
  serialPort = biosSerialPort;
  if (serialPort == 0) return;
  writePort(serialPort + kSerialFormat, 0x83);
  writePort(serialPort + kSerialData, 1);
  writePort(serialPort + kSerialInterrupts, 0);
  writePort(serialPort + kSerialFormat, 0x03);
  writePort(serialPort + kSerialInterrupts, 0);
  writePort(serialPort + kSerialFifo, 7);
  writePort(serialPort + kSerialModem, 3);
}

// A port that is absent, or does not get ready in a long time, is not used any more.
void sendSerial(char c) {
  if (!isSerialOpen) openSerial();
  if (serialPort == 0) return;
  for (std::uint16_t tries = 0xFFFF; tries > 0; --tries) {
    const std::uint8_t status = readPort(serialPort + kSerialStatus);
    if (status == kAbsent) break;
    if ((status & kSendable) == 0) continue;
    writePort(serialPort + kSerialData, static_cast<std::uint8_t>(c));
    return;
  }
  serialPort = 0;
}

// A line that nobody drives may chatter: only what a person types counts.
bool hasSerialKey() {
  if (serialPort == 0) return false;
  const std::uint8_t status = readPort(serialPort + kSerialStatus);
  if ((status & kReceived) == 0) return false;
  const std::uint8_t key = readPort(serialPort + kSerialData);
  if ((status & kDamaged) != 0) return false;
  return (key >= ' ' && key <= '~') || key == '\r' || key == '\n' || key == kEscape;
}

void put(char c) {
  BiosRegisters registers;
  registers.ax = 0x0E00 | static_cast<std::uint8_t>(c);
  registers.bx = 0x0007;
  biosCall(0x10, &registers);
  sendSerial(c);
}

void printDigits(std::uint32_t number, std::uint32_t base, std::uint32_t digits) {
  char text[11];
  char* const last = text + sizeof text - 1;
  char* first = last;
  *last = 0;
  do {
    *--first = "0123456789ABCDEF"[number % base];
    number /= base;
  } while (number > 0 || first > last - digits);
  print(first);
}

bool hasKey() {
  BiosRegisters registers;
  registers.ax = 0x0100;
  return (biosCall(0x16, &registers) & kZeroFlag) == 0 || hasSerialKey();
}

// Keys that were pressed to choose the network boot do not count, and what came by the serial line.
void forgetKeys() {
  biosFirstKey = biosNextKey;
  if (serialPort == 0) return;
  for (int i = 0; i < kSerialFifoSize; ++i) readPort(serialPort + kSerialData);
}

[[noreturn]] void restartAfterPause() {
  print("\nThis PC restarts in 10 seconds, or when a key is pressed.\n");
  forgetKeys();
  std::uint16_t last = biosTicks;
  for (std::uint16_t passed = 0; passed < kPause && !hasKey();) {
    waitForInterrupt();
    if (biosTicks == last) continue;
    last = biosTicks;
    ++passed;
  }
  restartPc();
}

[[noreturn]] void fail(const char* subject, const char* reason, const std::uint32_t* code) {
  if (!isAtLineStart) print("\n");
  print(subject);
  print(reason);
  if (code != nullptr) {
    print(" (code ");
    printHex(*code);
    print(").");
  }
  closeHardware();
  restartAfterPause();
}

}  // namespace

void print(const char* text) {
  for (char c = *text; c != 0; c = *++text) {
    isAtLineStart = c == '\n';
    if (isAtLineStart) put('\r');
    put(c);
  }
}

void printNumber(std::uint32_t number) {
  printDigits(number, 10, 1);
}
void printHex(std::uint32_t number) {
  printDigits(number, 16, 2);
}

void fail(const char* reason) {
  fail("", reason, nullptr);
}
void fail(const char* subject, const char* reason) {
  fail(subject, reason, nullptr);
}
void failWithCode(const char* subject, const char* reason, std::uint32_t code) {
  fail(subject, reason, &code);
}

}  // namespace omniset::loader
