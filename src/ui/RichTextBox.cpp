#include "ui/RichTextBox.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

#include "base/Error.h"

namespace ui {

RichTextBox::RichTextBox(Control* parent, std::string name)
    : Control(Kind::kRichTextBox, parent, std::move(name)) {}

std::string RichTextBox::Text() const {
  std::string text;
  for (const Run& run : runs_) text += run.text;
  return text;
}

void RichTextBox::Reset() {
  runs_.clear();
  document_.clear();
  length_ = selStart_ = 0;
  ++generation_;
}

void RichTextBox::Text(std::string text) {
  Reset();
  if (!text.empty()) InsertRun({std::move(text), ForeColor() == kDefaultColor ? kBlack : ForeColor(), false});
  selStart_ = 0;
  Notify(Aspect::kText);
}

void RichTextBox::SelStart(std::int32_t start) {
  selStart_ = std::clamp(start, 0, length_);
}

void RichTextBox::SelText(std::string text) {
  if (text.empty()) return;
  if (selStart_ != length_) ++generation_;
  InsertRun({std::move(text), selColor_, selBold_});
  Notify(Aspect::kText);
}

void RichTextBox::InsertRun(Run run) {
  const auto added = static_cast<std::int32_t>(run.text.size());
  // The place lies in the run that it would split.
  std::size_t at = 0;
  auto offset = static_cast<std::size_t>(selStart_);
  while (at < runs_.size() && offset >= runs_[at].text.size()) offset -= runs_[at++].text.size();
  if (offset > 0) {
    Run rest = runs_[at];
    rest.text.erase(0, offset);
    runs_[at].text.resize(offset);
    runs_.insert(runs_.begin() + static_cast<std::ptrdiff_t>(++at), std::move(rest));
  }
  const bool joins = at > 0 && runs_[at - 1].color == run.color && runs_[at - 1].bold == run.bold;
  if (joins) {
    runs_[at - 1].text += run.text;
  } else {
    runs_.insert(runs_.begin() + static_cast<std::ptrdiff_t>(at), std::move(run));
  }
  length_ += added;
  selStart_ += added;
}

void RichTextBox::LoadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw base::Error(base::ErrorNumber::kFileNotFound, "Unable to open file " + path);
  std::ostringstream content;
  content << file.rdbuf();
  std::string document = std::move(content).str();
  if (!document.starts_with("{\\rtf")) {
    throw base::Error(base::ErrorNumber::kFile, "This file isn't a rich text document: " + path);
  }
  Reset();
  document_ = std::move(document);
  Notify(Aspect::kText);
}

}  // namespace ui
