#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Control.h"

namespace ui {

/// Text in runs of one colour and weight, or a whole document in rich text format. The user reads it and
/// copies from it, but can't type in it.
class RichTextBox : public Control {
 public:
  struct Run {
    std::string text;
    Color color = kBlack;
    bool bold = false;
  };

  RichTextBox(Control* parent, std::string name);

  std::string Text() const;
  /// Replaces everything by plain text.
  void Text(std::string text);
  std::int32_t Length() const { return length_; }

  /// The place where SelText inserts: 0 to Length().
  std::int32_t SelStart() const { return selStart_; }
  void SelStart(std::int32_t start);
  Color SelColor() const { return selColor_; }
  void SelColor(Color color) { selColor_ = color; }
  bool SelBold() const { return selBold_; }
  void SelBold(bool bold) { selBold_ = bold; }
  /// Inserts with the selection's colour and weight, and puts the place behind the text.
  void SelText(std::string text);

  /// Replaces everything by the document; fails with base::Error when it can't be read or isn't rich text.
  void LoadFile(const std::string& path);
  /// The document's own bytes, empty when the text was built from runs.
  const std::string& Document() const { return document_; }
  const std::vector<Run>& Runs() const { return runs_; }
  /// Counts up each time the text is replaced rather than added to, so that a peer knows what it has shown.
  std::int32_t Generation() const { return generation_; }

  /// The user has put the place of insertion elsewhere.
  void UserSelStart(std::int32_t start) { SelStart(start); }

 private:
  void Reset();
  void InsertRun(Run run);

  std::vector<Run> runs_;
  std::string document_;
  std::int32_t length_ = 0;
  std::int32_t selStart_ = 0;
  std::int32_t generation_ = 0;
  Color selColor_ = kBlack;
  bool selBold_ = false;
};

}  // namespace ui
