#include "platform/DebugOutput.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/win32/Win32DebugOutput.h"

namespace {

std::string* heard = nullptr;

/// What a debugger listens to: the system raises each line as an exception that goes on by itself.
LONG CALLBACK Listen(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode != DBG_PRINTEXCEPTION_C) return EXCEPTION_CONTINUE_SEARCH;
  // The length counts the terminator.
  heard->append(reinterpret_cast<const char*>(record.ExceptionInformation[1]),
                record.ExceptionInformation[0] - 1);
  return EXCEPTION_CONTINUE_EXECUTION;
}

TEST(DebugOutputTest, ALineReachesTheDebugOutputOfTheSystem) {
  std::string lines;
  heard = &lines;
  void* listener = AddVectoredExceptionHandler(1, &Listen);
  platform::win32::Win32DebugOutput output;
  output.Trace("first caf\xE9");
  output.Trace("");
  output.Trace(std::string_view("second and more").substr(0, 6));
  RemoveVectoredExceptionHandler(listener);
  EXPECT_EQ(lines, "first caf\xE9\n\nsecond\n");
}

}  // namespace
