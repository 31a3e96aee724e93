#include "plugins/EventHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Error.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EventHandlerTest : public testing::Test {
 protected:
  EventHandlerTest() {
    handler->Error.Connect([this](const std::string& message, std::int16_t number) {
      heard.push_back("Error " + message + " " + std::to_string(number));
    });
    handler->IdentifyPort.Connect([this](std::int32_t port, std::string& description, bool& filterOut) {
      heard.push_back("IdentifyPort " + std::to_string(port) + " " + description +
                      (filterOut ? " out" : " in"));
      description = "named";
      filterOut = true;
    });
    handler->Log.Connect([this](const std::string& type, const std::string& source, std::int32_t sourcePort,
                                const std::string& destination, std::int32_t destinationPort,
                                const std::string& miscellaneous) {
      heard.push_back("Log " + type + " " + source + " " + std::to_string(sourcePort) + " " + destination +
                      " " + std::to_string(destinationPort) + " " + miscellaneous);
    });
  }

  /// Number of the failure, 0 when the source sees none.
  std::int32_t Raise(std::int32_t event, std::vector<base::Variant> values) {
    arguments = std::move(values);
    try {
      world.objects.Raise(event, arguments);
      return 0;
    } catch (const base::Error& error) {
      return error.Number();
    }
  }

  support::World world;
  std::shared_ptr<support::Script> script = std::make_shared<support::Script>();
  std::shared_ptr<EventHandler> handler =
      EventHandler::Connect(std::make_shared<support::ScriptedObject>(script));
  std::vector<std::string> heard;
  std::vector<base::Variant> arguments;
};

TEST_F(EventHandlerTest, ConnectsByTheContractsInterfaceAndNames) {
  EXPECT_EQ(world.objects.lastEvents.id, "{E0A74CD3-5372-419F-A5BE-5D09BDCFB740}");
  EXPECT_THAT(world.objects.lastEvents.names, ElementsAre("Error", "IdentifyPort", "Log"));
}

TEST_F(EventHandlerTest, TellsAnError) {
  EXPECT_EQ(Raise(1, {"No answer", std::int16_t{12}}), 0);
  EXPECT_THAT(heard, ElementsAre("Error No answer 12"));
}

TEST_F(EventHandlerTest, AsksForAPortAndGivesTheAnswerBack) {
  EXPECT_EQ(Raise(2, {70000, "was", false}), 0);
  EXPECT_THAT(heard, ElementsAre("IdentifyPort 70000 was in"));
  EXPECT_EQ(support::Describe(arguments[1]), "\"named\"");
  EXPECT_EQ(support::Describe(arguments[2]), "True");
}

TEST_F(EventHandlerTest, TellsALogLine) {
  EXPECT_EQ(Raise(3, {"in", "203.0.113.9", 4000, "192.168.1.7", 80, "web"}), 0);
  EXPECT_THAT(heard, ElementsAre("Log in 203.0.113.9 4000 192.168.1.7 80 web"));
}

TEST_F(EventHandlerTest, ConvertsArgumentsOfOtherKinds) {
  EXPECT_EQ(Raise(3, {1, {}, "4000", true, std::int16_t{80}, 2.5}), 0);
  EXPECT_THAT(heard, ElementsAre("Log 1  4000 True 80 2.5"));
  EXPECT_EQ(Raise(2, {"80", {}, 0}), 0);
  EXPECT_EQ(Raise(1, {"x", 32767}), 0);
}

TEST_F(EventHandlerTest, FailsToTheSourceForArgumentsThatDoNotConvert) {
  EXPECT_EQ(Raise(3, {"in", "a", "port", "b", 80, ""}), base::ErrorNumber::kTypeMismatch);
  EXPECT_EQ(Raise(1, {"x", 40000}), base::ErrorNumber::kOverflow);
  EXPECT_EQ(Raise(2, {80, base::ObjectRef(), false}), base::ErrorNumber::kTypeMismatch);
  EXPECT_THAT(heard, IsEmpty());
}

TEST_F(EventHandlerTest, FailsToTheSourceForAWrongNumberOfArguments) {
  EXPECT_EQ(Raise(1, {"x"}), base::ErrorNumber::kWrongArgumentCount);
  EXPECT_EQ(Raise(2, {80, "", false, 1}), base::ErrorNumber::kWrongArgumentCount);
  EXPECT_EQ(Raise(3, {}), base::ErrorNumber::kWrongArgumentCount);
  EXPECT_THAT(heard, IsEmpty());
}

TEST_F(EventHandlerTest, FailsToTheSourceForAnUnknownEvent) {
  EXPECT_EQ(Raise(4, {}), base::ErrorNumber::kMemberNotFound);
}

TEST_F(EventHandlerTest, GivesAHandlersFailureBackToTheSource) {
  handler->Error.Connect([](const std::string&, std::int16_t) { throw base::Error(1234, "handler"); });
  EXPECT_EQ(Raise(1, {"x", std::int16_t{1}}), 1234);
}

TEST_F(EventHandlerTest, HearsNothingMoreOnceItIsLetGo) {
  EXPECT_EQ(world.objects.Connections(), 1u);
  handler.reset();
  EXPECT_EQ(world.objects.Connections(), 0u);
  EXPECT_EQ(script->alive, 0);
  EXPECT_EQ(Raise(1, {"x", std::int16_t{1}}), 0);
  EXPECT_THAT(heard, IsEmpty());
}

TEST_F(EventHandlerTest, MayBeLetGoByAHandlerOfItsOwn) {
  handler->IdentifyPort.Connect([this](std::int32_t, std::string& description, bool&) {
    handler.reset();
    description = "last words";
  });
  EXPECT_EQ(Raise(2, {80, "", false}), 0);
  EXPECT_EQ(support::Describe(arguments[1]), "\"last words\"");
  EXPECT_EQ(script->alive, 0);
}

}  // namespace
