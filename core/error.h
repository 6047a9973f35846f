// The exception types of the system. All are thrown by value and caught by reference; their texts
// reach the operator unchanged.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace omniset {

// A failed operating-system call: "<call text>: <system text>Error code: <code>". The system text
// normally ends in a line break, so the code stands on a line of its own.
class Error : public std::exception {
 public:
  // To be constructed right after the failed call: takes the thread's last error code first.
  explicit Error(std::string_view callText);

  const char* what() const noexcept override { return message_.c_str(); }

  // The calling thread's last error code now (not the one in the message).
  virtual long lastError() const;

 private:
  std::string message_;
};

// A failed socket call; composed like Error.
class SocketExc : public Error {
 public:
  using Error::Error;
  long lastError() const override;
};

// A malformed package file. Holds a pointer to a literal: copying it copies only the pointer.
class BadFile : public std::exception {
 public:
  explicit BadFile(const char* literal) noexcept : text_(literal) {}
  const char* what() const noexcept override { return text_; }

 private:
  const char* text_;
};

// A failure told in a sentence for the operator, without any system text.
class Failure : public std::exception {
 public:
  explicit Failure(std::string message) : message_(std::move(message)) {}
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
};

}  // namespace omniset
