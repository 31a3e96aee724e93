#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/CMapProfile.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Frame.h"
#include "ui/Label.h"
#include "ui/TextBox.h"
#include "ui/UserControl.h"

/// The grid of one profile's mappings. A row is a mapping when one of its protocols is ticked, whatever else
/// it holds. The profile isn't touched before Save.
class ctlMappingEditor : public ui::UserControl {
 public:
  /// Rows count from 0; the user counts them from 1.
  static constexpr std::int16_t kRows = 10;

  ctlMappingEditor(ui::Control* parent, std::string name);

  /// The user accepts, and every row that is a mapping can be read.
  base::Event<> Accept;
  base::Event<> Cancel;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  /// Fails for a profile of more mappings than there are rows, and changes nothing then.
  void Populate(const CMapProfile& MapProfile);
  /// Puts the mappings of the grid, under new keys, in the place of the profile's. Fails for a text that
  /// can't be read, and changes nothing then.
  void Save(CMapProfile& MapProfile) const;
  /// To the first box.
  void SetFocus();

 protected:
  void OnResize() override;

 private:
  struct Row {
    Row(ui::Control* frame, std::int16_t iRow);
    bool IsMapping() const { return chkTCP.Checked() || chkUDP.Checked(); }

    ui::TextBox txtDescription;
    ui::TextBox txtBeginRange;
    ui::Label lblTo;
    ui::TextBox txtEndRange;
    ui::CheckBox chkTCP;
    ui::CheckBox chkUDP;
    ui::TextBox txtTargetIP;
  };
  /// A text that can't be read.
  struct Unreadable {
    ui::TextBox* box;
    /// Tells the user the row and the value.
    std::string sMessage;
  };

  void Connect(Row& row);
  bool ShowAdvance() const { return m_bShowAdvance; }
  void ShowAdvance(bool bShow);
  void SetMappingRow(std::int16_t iRow, const std::string& sDescription, std::int32_t lBeginPort,
                     std::int32_t lEndPort, std::int32_t Protocal, std::int16_t iForwardIPAddress,
                     bool bClear);
  void SetControlsVisible(bool bVisible);
  void LayOutColumns();
  std::optional<Unreadable> FindUnreadable();
  void EnableAccept() { cmdAccept.Enabled(true); }
  void cmdAccept_Click();

  ui::Label lblTitle;
  ui::Frame framMappings;
  ui::Label lblDescription;
  ui::Label lblBeginRange;
  ui::Label lblEndRange;
  ui::Button cmdShowAdvance;
  ui::Label lblIP;
  std::deque<Row> m_Rows;
  ui::Label lblError;
  ui::Button cmdAccept;
  ui::Button cmdCancel;
  /// The target column shows.
  bool m_bShowAdvance = false;
};
