#include "support/BoxReader.h"

#include <algorithm>
#include <utility>

BoxReader::BoxReader(const Program& program) : program_(program), thread_([this] { Read(); }) {}

BoxReader::~BoxReader() {
  enough_ = true;
  thread_.join();
}

std::vector<std::string> BoxReader::Take() {
  constexpr ULONGLONG kAtRest = 150;
  WaitFor([this] { return StaysSo(kAtRest, [this] { return !program_.FindBox(); }); });
  const std::lock_guard lock(mutex_);
  return std::exchange(texts_, {});
}

void BoxReader::Read() {
  constexpr DWORD kEvery = 20;
  constexpr ULONGLONG kPatience = 1'000;
  for (; !enough_; Sleep(kEvery)) {
    const auto box = program_.FindBox();
    if (!box) continue;
    {
      const std::lock_guard lock(mutex_);
      texts_.push_back(box->text);
    }
    const bool question = std::find(box->buttons.begin(), box->buttons.end(), "Yes") != box->buttons.end();
    PostMessageA(box->window, WM_COMMAND, question ? IDYES : IDOK, 0);
    const ULONGLONG end = GetTickCount64() + kPatience;
    while (IsWindowVisible(box->window) && GetTickCount64() < end) Sleep(kEvery);
  }
}
