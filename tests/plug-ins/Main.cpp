#include <gmock/gmock.h>
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>

#include "support/Host.h"

namespace {

class Registration : public testing::Environment {
 public:
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
    ASSERT_NO_THROW(host::RegisterPlugIns());
  }
  void TearDown() override { OleUninitialize(); }
};

}  // namespace

int main(int count, char** arguments) {
  testing::InitGoogleMock(&count, arguments);
  testing::AddGlobalTestEnvironment(new Registration);
  return RUN_ALL_TESTS();
}
