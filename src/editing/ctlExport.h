#pragma once

#include <cstdint>
#include <string>

#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/UserControl.h"

/// The page that writes profiles to a file or reads them from one.
class ctlExport : public ui::UserControl {
 public:
  ctlExport(ui::Control* parent, std::string name);

  /// 0 for export, 1 for import.
  std::int32_t TransferType() const { return transferType_; }
  void TransferType(std::int32_t type);

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  void Populate();

 protected:
  void OnResize() override;

 private:
  ui::Label lblTitle;
  ui::ListView lvProfiles;
  std::int32_t transferType_ = 0;
};
