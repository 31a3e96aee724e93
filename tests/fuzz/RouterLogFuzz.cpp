// The reader of "RouterLog.dat", as the Activity Log page uses it.

#include <string>

#include "FuzzWorld.h"
#include "activitylog/ctlRouterLog.h"
#include "support/FindControl.h"
#include "ui/Form.h"

namespace {

struct LogWorld : fuzz::World {
  LogWorld() { folder.Write("Ports.dat", "22\r\nssh\r\n"); }

  ui::Form window{"frmFuzz", "Fuzz", {}, 9000, 7000};
};

/// Opens the page on the file that is there; what it saves.
std::string LoadAndSave(LogWorld& world) {
  ctlRouterLog page(&world.window, "ctlRouterLog");
  auto& rows = support::FindControl<ui::ListView>(page, "lvRouterLog");
  for (std::size_t row = 0; row < rows.RowCount(); ++row) {
    fuzz::Require(rows.Rows().CellCount(row) == 7, "a row has seven cells");
  }
  page.SaveContentsToDatabase();
  return world.folder.Read("RouterLog.dat");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static LogWorld world;
  world.Forget();
  world.folder.Write("RouterLog.dat", fuzz::Text(data, size));
  const std::string saved = LoadAndSave(world);
  fuzz::Require(saved.starts_with(' ') && saved.ends_with("\r\n"), "the file begins with its count");
  fuzz::Require(LoadAndSave(world) == saved, "what was saved is loaded as it was");
  return 0;
}
