#include "platform/NotificationArea.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include <cstring>

#include "platform/win32/Win32NotificationArea.h"

namespace {

using platform::NotifyIconData;
using platform::NotifyIconMessage;
using platform::win32::ToNative;

class NotificationAreaTest : public testing::Test {
 protected:
  NotificationAreaTest()
      : window_(CreateWindowExA(0, "STATIC", "Form1", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr, nullptr,
                                nullptr)) {
    EXPECT_NE(window_, nullptr) << "no window without a screen";
    data_.cbSize = 88;
    data_.hWnd = reinterpret_cast<std::uintptr_t>(window_);
    data_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data_.uCallbackMessage = WM_MOUSEMOVE;
    data_.hIcon = reinterpret_cast<std::uintptr_t>(LoadIconA(nullptr, IDI_APPLICATION));
    data_.szTip.fill(' ');
    data_.szTip[0] = '\0';
  }
  ~NotificationAreaTest() override { DestroyWindow(window_); }

  HWND window_;
  NotifyIconData data_;
  platform::win32::Win32NotificationArea area_;
};

TEST_F(NotificationAreaTest, TheRecordHasThisProgramsSizeAndEveryFieldInItsPlace) {
  data_.hWnd = static_cast<std::uintptr_t>(0x11223344);
  data_.uID = 2;
  data_.hIcon = static_cast<std::uintptr_t>(0x55667788);
  for (std::size_t i = 0; i < data_.szTip.size(); ++i) data_.szTip[i] = static_cast<char>(' ' + i);
  const auto native = ToNative(data_);
  const auto* bytes = reinterpret_cast<const unsigned char*>(&native);
  const std::size_t wide = sizeof(void*) == 8 ? 1 : 0;
  const auto numberAt = [&](std::size_t offset) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes + offset, sizeof number);
    return number;
  };
  EXPECT_EQ(numberAt(0), wide ? 104u : 88u);
  EXPECT_EQ(numberAt(wide ? 8 : 4), 0x11223344u);
  EXPECT_EQ(numberAt(wide ? 16 : 8), 2u);
  EXPECT_EQ(numberAt(wide ? 20 : 12), 7u);
  EXPECT_EQ(numberAt(wide ? 24 : 16), 0x200u);
  EXPECT_EQ(numberAt(wide ? 32 : 20), 0x55667788u);
  EXPECT_EQ(std::memcmp(bytes + (wide ? 40 : 24), data_.szTip.data(), 64), 0);
}

TEST_F(NotificationAreaTest, AnIconCanBeAddedChangedAndDeletedOnce) {
  EXPECT_FALSE(area_.ShellNotifyIcon(NotifyIconMessage::kModify, data_)) << "it isn't there yet";
  EXPECT_TRUE(area_.ShellNotifyIcon(NotifyIconMessage::kAdd, data_));
  EXPECT_FALSE(area_.ShellNotifyIcon(NotifyIconMessage::kAdd, data_)) << "it is there already";
  EXPECT_TRUE(area_.ShellNotifyIcon(NotifyIconMessage::kModify, data_));
  EXPECT_TRUE(area_.ShellNotifyIcon(NotifyIconMessage::kDelete, data_));
  EXPECT_FALSE(area_.ShellNotifyIcon(NotifyIconMessage::kDelete, data_)) << "it is gone";
}

TEST_F(NotificationAreaTest, ATipThatFillsItsFieldIsTaken) {
  data_.szTip.fill('t');
  EXPECT_TRUE(area_.ShellNotifyIcon(NotifyIconMessage::kAdd, data_));
  EXPECT_TRUE(area_.ShellNotifyIcon(NotifyIconMessage::kDelete, data_));
}

}  // namespace
