// no-router INTERFACE: tells everybody who asks for an IPv6 router that there is none, until it is
// ended. Boot firmware waits many seconds for an answer otherwise (RFC 4861).

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/icmp6.h>
#include <sys/socket.h>

#include <cstdio>

namespace {

int openSocket(unsigned interface) {
  const int icmp = socket(AF_INET6, SOCK_RAW, IPPROTO_ICMPV6);
  icmp6_filter filter;
  ICMP6_FILTER_SETBLOCKALL(&filter);
  ICMP6_FILTER_SETPASS(ND_ROUTER_SOLICIT, &filter);
  setsockopt(icmp, IPPROTO_ICMPV6, ICMP6_FILTER, &filter, sizeof filter);
  const int hops = 255;  // others are not believed
  setsockopt(icmp, IPPROTO_IPV6, IPV6_MULTICAST_HOPS, &hops, sizeof hops);
  setsockopt(icmp, IPPROTO_IPV6, IPV6_MULTICAST_IF, &interface, sizeof interface);
  ipv6_mreq routers{};
  inet_pton(AF_INET6, "ff02::2", &routers.ipv6mr_multiaddr);
  routers.ipv6mr_interface = interface;
  if (setsockopt(icmp, IPPROTO_IPV6, IPV6_JOIN_GROUP, &routers, sizeof routers) < 0) return -1;
  return icmp;
}

sockaddr_in6 everybody(unsigned interface) {
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_scope_id = interface;
  inet_pton(AF_INET6, "ff02::1", &address.sin6_addr);
  return address;
}

}  // namespace

int main(int argc, char** argv) {
  const unsigned interface = argc == 2 ? if_nametoindex(argv[1]) : 0;
  const int icmp = interface != 0 ? openSocket(interface) : -1;
  if (icmp < 0) {
    std::fprintf(stderr, "usage: no-router INTERFACE (as root)\n");
    return 2;
  }
  const sockaddr_in6 to = everybody(interface);
  nd_router_advert none{};  // a lifetime of 0: no router
  none.nd_ra_type = ND_ROUTER_ADVERT;
  char solicitation[1500];
  while (recv(icmp, solicitation, sizeof solicitation, 0) >= 0) {
    sendto(icmp, &none, sizeof none, 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
  }
  return 1;
}
