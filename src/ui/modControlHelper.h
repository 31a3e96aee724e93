#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "ui/Color.h"

/// Small helpers of all pages. They ask of a control no more than the members that they name, so that they
/// serve any control that is like a list or like a text.
namespace modControlHelper {

/// Adds the text at the place that the control chooses, with its number. The new row.
template <typename List>
std::int32_t AddComboItem(List& cb, std::string sText, std::int32_t lItemData) {
  cb.AddItem(std::move(sText));
  cb.ItemData(cb.NewIndex(), lItemData);
  return cb.NewIndex();
}

/// The number of the chosen row; fails as the control does when none is chosen.
template <typename List>
std::int32_t GetComboItemData(const List& cb) {
  return cb.ItemData(cb.ListIndex());
}

/// Chooses the first row that carries the number; when none does, the choice stays.
template <typename List>
void SelectComboItemData(List& cb, std::int32_t lItemData) {
  for (std::int32_t i = 0; i <= cb.ListCount() - 1; ++i) {
    if (cb.ItemData(i) == lItemData) {
      cb.ListIndex(i);
      return;
    }
  }
}

template <typename TextBox>
void SelectAllText(TextBox& txt) {
  txt.SelStart(0);
  txt.SelLength(static_cast<std::int32_t>(txt.Text().size()));
}

/// Appends the text in a colour and weight of its own; what was there keeps its.
template <typename RichTextBox>
void AddRichText(RichTextBox& rt, std::string sText, bool bBold, ui::Color lColor) {
  rt.SelStart(rt.Length());
  rt.SelColor(lColor);
  rt.SelBold(bBold);
  rt.SelText(std::move(sText));
}

}  // namespace modControlHelper
