#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/Machine.h"
#include "platform/win32/Win32Machine.h"
#include "support/Automation.h"
#include "support/Failure.h"
#include "support/Role.h"

namespace support {

/// Tests that reach an object of the test as the program reaches a plug-in: by the name of its class.
class ComTest : public testing::Test {
 protected:
  ComTest() : alive_(CountedObject::Alive()), served_(new AutomationObject) {}

  void TearDown() override {
    object_.reset();
    class_.reset();
    served_->Release();
    EXPECT_EQ(CountedObject::Alive(), alive_) << "an object of the test was never released";
  }

  /// The object's members are added to this.
  AutomationObject& Served() { return *served_; }

  /// The object, made by the program.
  platform::LateBoundObject& Object() {
    if (!object_) {
      class_ = std::make_unique<RegisteredClass>(progId_, served_);
      object_ = platform::TheMachine().objects->Create(progId_);
    }
    return *object_;
  }

  const platform::win32::Win32Machine machine_;
  const std::string progId_ = "HarbourlineTest.Class" + std::to_string(GetCurrentProcessId());

 private:
  int alive_;
  AutomationObject* served_;
  std::unique_ptr<RegisteredClass> class_;
  platform::LateBoundRef object_;
};

}  // namespace support
