#include "platform/win32/Win32WindowList.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <stdexcept>
#include <vector>

#include "support/Role.h"

#undef FindWindow
#undef GetClassName
#undef GetWindowText
#undef GetWindowTextLength

namespace {

using platform::WindowHandle;

/// A real top-level window; its class goes away with it.
class Window {
 public:
  Window(const std::string& className, const std::string& title, DWORD style = WS_OVERLAPPEDWINDOW)
      : className_(className) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = &DefWindowProcA;
    windowClass.lpszClassName = className_.c_str();
    RegisterClassA(&windowClass);
    handle_ = CreateWindowExA(0, className_.c_str(), title.c_str(), style, 0, 0, 80, 60, nullptr, nullptr,
                              nullptr, nullptr);
    EXPECT_NE(handle_, nullptr) << "no window without a screen: " << GetLastError();
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() {
    DestroyWindow(handle_);
    UnregisterClassA(className_.c_str(), nullptr);
  }

  WindowHandle Handle() const { return reinterpret_cast<WindowHandle>(handle_); }

 private:
  std::string className_;
  HWND handle_;
};

class WindowListTest : public testing::Test {
 protected:
  const std::string className_ = support::UniqueName("HarbourlineTestClass");
  const std::string title_ = support::UniqueName("Caf\xE9");
  const Window window_{className_, title_};
  platform::win32::Win32WindowList list_;
};

TEST_F(WindowListTest, FindsAHiddenWindowByClassAndTitle) {
  EXPECT_EQ(list_.FindWindow(className_.c_str(), title_.c_str()), window_.Handle());
}

TEST_F(WindowListTest, FindsByClassAlone) {
  EXPECT_EQ(list_.FindWindow(className_.c_str(), nullptr), window_.Handle());
}

TEST_F(WindowListTest, FindsByTitleAlone) {
  EXPECT_EQ(list_.FindWindow(nullptr, title_.c_str()), window_.Handle());
}

TEST_F(WindowListTest, ATitleIsComparedAsAWhole) {
  EXPECT_EQ(list_.FindWindow(className_.c_str(), (title_ + "x").c_str()), 0);
  EXPECT_EQ(list_.FindWindow(className_.c_str(), title_.substr(1).c_str()), 0);
  EXPECT_EQ(list_.FindWindow(className_.c_str(), ""), 0);
}

TEST_F(WindowListTest, ATitleOfAnotherClassDoesNotMatch) {
  EXPECT_EQ(list_.FindWindow("HarbourlineTestOther", title_.c_str()), 0);
}

TEST_F(WindowListTest, EnumeratesShownAndHiddenWindowsOnce) {
  const Window shown(className_ + "shown", "shown", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  int hiddenSeen = 0;
  int shownSeen = 0;
  list_.EnumWindows([&](WindowHandle window) {
    hiddenSeen += window == window_.Handle();
    shownSeen += window == shown.Handle();
    return true;
  });
  EXPECT_EQ(hiddenSeen, 1);
  EXPECT_EQ(shownSeen, 1);
}

TEST_F(WindowListTest, EnumerationEndsWhenTheCallbackSaysSo) {
  const Window second(className_ + "second", "second");
  int calls = 0;
  list_.EnumWindows([&](WindowHandle) { return ++calls < 1; });
  EXPECT_EQ(calls, 1);
}

TEST_F(WindowListTest, AFailureOfTheCallbackEndsTheEnumerationAndArrives) {
  const Window second(className_ + "second", "second");
  int calls = 0;
  EXPECT_THROW(list_.EnumWindows([&](WindowHandle) -> bool {
    ++calls;
    throw std::runtime_error("callback");
  }),
               std::runtime_error);
  EXPECT_EQ(calls, 1);
}

TEST_F(WindowListTest, TellsTitleAndClass) {
  const auto length = list_.GetWindowTextLength(window_.Handle());
  ASSERT_EQ(length, static_cast<std::int32_t>(title_.size()));
  std::vector<char> buffer(static_cast<std::size_t>(length) + 1, 'x');
  EXPECT_EQ(list_.GetWindowText(window_.Handle(), buffer.data(), length + 1), length);
  EXPECT_EQ(std::string(buffer.data()), title_);
  char name[255];
  EXPECT_EQ(list_.GetClassName(window_.Handle(), name, sizeof name),
            static_cast<std::int32_t>(className_.size()));
  EXPECT_EQ(std::string(name), className_);
}

TEST_F(WindowListTest, ATitleIsCutToTheRoomLessTheTerminator) {
  char buffer[6] = "xxxxx";
  EXPECT_EQ(list_.GetWindowText(window_.Handle(), buffer, 4), 3);
  EXPECT_EQ(std::string(buffer, 6), std::string("Caf\0x\0", 6));
}

TEST_F(WindowListTest, AWindowThatIsGoneHasNoText) {
  WindowHandle gone = 0;
  { gone = Window(className_ + "gone", "gone").Handle(); }
  char buffer[8] = "x";
  EXPECT_EQ(list_.GetWindowTextLength(gone), 0);
  EXPECT_EQ(list_.GetWindowText(gone, buffer, sizeof buffer), 0);
  EXPECT_EQ(list_.GetClassName(gone, buffer, sizeof buffer), 0);
}

}  // namespace
