#include <gtest/gtest.h>

#include "log/Texts.h"

namespace upnp::log {
namespace {

ListenerState Listening(std::size_t datagrams, std::size_t packets, Time last) {
  ListenerState state;
  state.listening = true;
  state.arrivals = {datagrams, packets, last};
  return state;
}

TEST(LogTextsTest, TellsWhatToEnterInTheRouter) {
  const std::string text = HowToPointARouterHere("192.168.1.5", 5514);
  EXPECT_NE(text.find("Enter 192.168.1.5 as the syslog server and 5514 as the port"), std::string::npos)
      << text;
}

TEST(LogTextsTest, TellsThatTheRouterComesFirst) {
  EXPECT_EQ(HowToPointARouterHere("", 514),
            "As soon as a router is found, this tells where it is to send its log.");
}

TEST(LogTextsTest, TellsWhetherLinesArrive) {
  EXPECT_EQ(ArrivalText(Listening(0, 0, Time(0)), Time(90'000)), "Lines arrive: none yet.");
  EXPECT_EQ(ArrivalText(Listening(124, 3, Time(87'000)), Time(90'000)),
            "Lines arrive: 124 so far, the last one 3 seconds ago.");
}

TEST(LogTextsTest, TellsWhenTheLastLineCame) {
  const struct {
    Time ago;
    const char* words;
  } times[] = {{Time(0), "just now"},           {Time(999), "just now"},
               {Time(1000), "1 second ago"},    {Time(59'999), "59 seconds ago"},
               {Time(60'000), "1 minute ago"},  {Time(3'599'999), "59 minutes ago"},
               {Time(3'600'000), "1 hour ago"}, {Time(90'000'000), "25 hours ago"}};
  for (const auto& [ago, words] : times) {
    EXPECT_EQ(ArrivalText(Listening(2, 1, Time(5)), Time(5) + ago),
              std::string("Lines arrive: 2 so far, the last one ") + words + ".");
  }
}

TEST(LogTextsTest, AdvisesWhereNoLineTellsOfAPacket) {
  EXPECT_EQ(ArrivalText(Listening(7, 0, Time(0)), Time(0)),
            "Lines arrive: 7 so far, the last one just now. None tells of a packet: let the router log its "
            "firewall.");
}

TEST(LogTextsTest, TellsThatTheLogIsOff) {
  EXPECT_EQ(ArrivalText({}, Time(0)), "Not listening: the activity log is off.");
}

TEST(LogTextsTest, TellsTheProblemBeforeAllElse) {
  ListenerState state = Listening(7, 7, Time(0));
  state.problem = "It is broken.";
  EXPECT_EQ(ArrivalText(state, Time(0)), "It is broken.");
}

TEST(LogTextsTest, TellsWhyThePortCantBeHad) {
  EXPECT_EQ(PortProblem(PortTrouble::kTaken, "192.168.1.5", 514, 10048),
            "The router's log can't be received at 192.168.1.5, UDP port 514: another program uses the port. "
            "Choose "
            "another port here and in the router.");
  EXPECT_EQ(PortProblem(PortTrouble::kForbidden, "192.168.1.5", 514, 10013),
            "The router's log can't be received at 192.168.1.5, UDP port 514: Windows doesn't let this "
            "program have the "
            "port. Choose another port here and in the router.");
  EXPECT_EQ(PortProblem(PortTrouble::kNoAddress, "192.168.1.5", 514, 10049),
            "The router's log can't be received at 192.168.1.5, UDP port 514: this computer doesn't have the "
            "address any "
            "more.");
  EXPECT_EQ(
      PortProblem(PortTrouble::kOther, "192.168.1.5", 514, 10055),
      "The router's log can't be received at 192.168.1.5, UDP port 514: Windows reports the error 10055.");
}

}  // namespace
}  // namespace upnp::log
