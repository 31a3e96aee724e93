// The members of ctlRouterLog that keep the rows and their file.

#include <array>
#include <charconv>
#include <exception>

#include "activitylog/ctlRouterLog.h"
#include "base/Conversions.h"
#include "base/Failures.h"
#include "base/TextFile.h"
#include "editing/modListViewHelper.h"
#include "platform/Machine.h"
#include "platform/ReplacedTextFile.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"

namespace {

constexpr std::size_t kColumns = 7;
constexpr std::string_view kIncoming = "in";
constexpr ui::Color kIncomingColor = ui::Rgb(255, 0, 0);

std::string DatabasePath() {
  return modCommon::MakeFullPath(g_Registry->InstallPath(), "RouterLog.dat");
}

/// A number as text, without a string of its own.
class Decimal {
 public:
  explicit Decimal(std::int32_t number, char prefix = 0) {
    if (prefix) *end_++ = prefix;
    end_ = std::to_chars(end_, text_ + sizeof text_, number).ptr;
  }
  Decimal(const Decimal&) = delete;
  Decimal& operator=(const Decimal&) = delete;

  operator std::string_view() const { return {text_, static_cast<std::size_t>(end_ - text_)}; }

 private:
  char text_[16];
  char* end_ = text_;
};

}  // namespace

void ctlRouterLog::LoadLogDatabase() {
  try {
    ReadLogDatabase();
  } catch (const std::exception&) {
    platform::TheMachine().debug->Trace("Error occured during loading of the log database.");
  }
}

void ctlRouterLog::ReadLogDatabase() {
  base::TextFileReader file(DatabasePath());
  const std::int32_t lCount = base::ToInt32(file.ReadLine());
  std::array<std::string_view, kColumns> lines;
  std::string sIdentified;
  for (std::int32_t lRow = 0; lRow < lCount; ++lRow) {
    file.ReadLines(lines);
    auto& [sTime, sLogType, sDestinationURLIP, sDestinationPort, sSourceIP, sSourcePort, sMiscellaneous] =
        lines;
    const std::int32_t lDestinationPort = base::ToInt32(sDestinationPort);
    const std::int32_t lSourcePort = base::ToInt32(sSourcePort);
    if (sMiscellaneous.empty()) {
      Identify(lDestinationPort, sIdentified);
      sMiscellaneous = sIdentified;
    }
    AddLogRow(sTime, sLogType, sDestinationURLIP, lDestinationPort, sSourceIP, lSourcePort, sMiscellaneous);
  }
  modListViewHelper::AutoSizeListViewColumns(lvRouterLog, true);
}

void ctlRouterLog::Identify(std::int32_t lPort, std::string& sDescription) {
  try {
    bool bFilterOut = false;
    m_EventHandler_IdentifyPort(lPort, sDescription, bFilterOut);
  } catch (const std::exception& failure) {
    sDescription.clear();
    platform::TheMachine().debug->Trace("Port " + base::ToText(lPort) +
                                        " isn't named: " + base::Describe(failure));
  }
}

void ctlRouterLog::AddLogRow(std::string_view sTime, std::string_view sLogType,
                             std::string_view sDestinationURLIP, std::int32_t lDestinationPort,
                             std::string_view sSourceIP, std::int32_t lSourcePort,
                             std::string_view sMiscellaneous) {
  const Decimal key(++m_lRowCounter, 'K');
  const Decimal destinationPort(lDestinationPort);
  const Decimal sourcePort(lSourcePort);
  const ui::Color color = sLogType == kIncoming ? kIncomingColor : modCommon::ColorNavy();
  const std::array<std::string_view, kColumns> cells{
      sTime, sLogType, sDestinationURLIP, destinationPort, sSourceIP, sourcePort, sMiscellaneous};
  lvRouterLog.EnsureVisible(lvRouterLog.AppendRow(key, cells, color));
  cmdClear.Enabled(true);
}

void ctlRouterLog::SaveContentsToDatabase() {
  try {
    platform::ReplacedTextFile replaced(DatabasePath());
    base::TextFileWriter& file = replaced.Writer();
    const ui::ListRows& rows = lvRouterLog.Rows();
    file.WriteLine(base::ToTextWithSignPlace(static_cast<std::int32_t>(rows.Count())));
    for (std::size_t row = 0; row < rows.Count(); ++row) {
      const auto [text, ends] = rows.Cells(row);
      file.WriteLines(text, ends);
    }
    replaced.Close();
  } catch (const std::exception&) {
    platform::TheMachine().debug->Trace("Error occured during saving of the log database.");
  }
}
