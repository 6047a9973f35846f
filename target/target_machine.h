// A PC that is waiting to be installed: it announces itself on each of its network cards that has a
// link, and keeps to the one on which an offer came, until that installation has come to nothing.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/clock.h"
#include "link/broadcast_endpoint.h"
#include "link/link_frame.h"
#include "target/network_cards.h"
#include "target/target_console.h"
#include "target/target_session.h"
#include "target/target_store.h"

namespace omniset {

// What the announcements of all cards say.
struct MachineFacts {
  std::string product;  // with its version; the label is this and the card's name
  std::string machine;  // processor and memory
  std::string disks;
};

class TargetMachine {
 public:
  // Switches the cards on. All that is handed in outlives the machine.
  TargetMachine(MachineFacts facts, NetworkCards& cards, const Clock& clock, TargetStore& store,
                TargetConsole& console);

  bool hasCards() const { return !ports_.empty(); }

  // One turn of the loop: watches the links, fires the timers that are due and takes the datagrams
  // that have come, waiting for one at most 200 ms. Failures of a card are told to the console.
  void step();

  // A key was pressed on the PC's console.
  void keyPressed();

  // What the disks line of the announcements says from now on.
  void describeDisks(const std::string& disks);

  // The session that has taken an offer, until its installation has come to nothing; else null.
  const TargetSession* engaged() const { return engaged_ ? engaged_->session.get() : nullptr; }
  bool mayReboot() const;

 private:
  struct Port {
    NetworkCard card;
    bool hasLink = false;
    // Both from the first link on, but for a while after a failure of the card.
    std::unique_ptr<BroadcastEndpoint> endpoint;
    std::unique_ptr<TargetSession> session;

    std::string title() const;
  };

  void watchLinks();
  void linkCame(Port& port);
  void linkWent(Port& port);
  void serveAll();
  void serve(Port& port, Micros longestWait);
  void receive(Port& port, Micros wait);
  void close(Port& port, const std::string& reason);
  void noteEngagement(Port& port);
  void drain(Port& port);

  MachineFacts facts_;
  NetworkCards& cards_;
  const Clock& clock_;
  TargetStore& store_;
  TargetConsole& console_;
  std::vector<Port> ports_;
  Port* engaged_ = nullptr;
  Micros nextLook_ = 0;
  Micros listenedUntil_;
  LinkFrame frame_;
};

}  // namespace omniset
