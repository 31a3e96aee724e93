#include "support/LogPage.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <utility>

#include "base/Error.h"
#include "settings/CRegistry.h"

namespace bench {
namespace {

constexpr std::size_t kBlock = 64 * 1024;

ui::Control& Child(const ui::Control& parent, std::string_view name) {
  const auto& children = parent.Children();
  return **std::find_if(children.begin(), children.end(),
                        [name](const ui::Control* child) { return child->Name() == name; });
}

}  // namespace

base::Variant LogRouter::Get(std::string_view member) {
  if (member != "IServer_EventHandler") return {};
  return platform::LateBoundRef(platform::LateBoundRef(), &source_);
}

platform::LateBoundRef LogRouter::Create(std::string_view) {
  throw base::Error(base::ErrorNumber::kCannotCreateObject, "There are no classes here");
}

std::unique_ptr<platform::EventConnection> LogRouter::Connect(platform::LateBoundObject&,
                                                              const platform::EventInterface&,
                                                              platform::EventSink& sink) {
  sink_ = &sink;
  return std::make_unique<platform::EventConnection>();
}

std::string LogRouter::IdentifyPort(std::int32_t port) {
  base::Variant arguments[] = {port, std::string(), false};
  sink_->OnEvent(2, arguments);
  return base::ToText(arguments[1]);
}

void LogRouter::Log(std::int32_t sourcePort) {
  base::Variant arguments[] = {"in", "203.0.113.99", sourcePort, "192.168.1.20", std::int32_t{80}, "http"};
  sink_->OnEvent(3, arguments);
}

LogPage::LogPage() {
  std::random_device random;
  folder_ = std::filesystem::temp_directory_path() / ("harbourline-bench-" + std::to_string(random()));
  std::filesystem::create_directories(Folder());
  process_.path = Folder() + "\\Harbourline.exe";
  machine_.settings.keeps = false;
  platform::TheMachine().process = &process_;
  platform::TheMachine().objects = &router;
  g_Registry = std::make_unique<CRegistry>();
  g_Registry->Router = platform::LateBoundRef(platform::LateBoundRef(), &router);
}

LogPage::~LogPage() {
  page.reset();
  g_Registry.reset();
  std::filesystem::remove_all(folder_);
}

ui::ListView& LogPage::Rows() const {
  return static_cast<ui::ListView&>(Child(*page, "lvRouterLog"));
}

ui::Menu& LogPage::RemoveEntry() const {
  return static_cast<ui::Menu&>(Child(Child(*page, "mnuPopUpLog"), "mnuRemove"));
}

std::string LogFile(std::int64_t rows) {
  static const char* const services[] = {"http", "https", "Game server", "domain", "smtp", "snmp-trap"};
  std::mt19937 random(1);
  const auto number = [&random](unsigned below) { return std::to_string(random() % below); };
  const auto twoDigits = [&random](unsigned below) {
    return std::to_string(100 + random() % below).substr(1);
  };
  std::ostringstream text;
  text << ' ' << rows << "\r\n";
  for (std::int64_t row = 0; row < rows; ++row) {
    const bool incoming = random() % 2 == 0;
    const std::string outside = "203.0.113." + number(256);
    const std::string inside = "192.168.1." + number(256);
    text << "11/" << 10 + random() % 20 << "/26 " << twoDigits(24) << ':' << twoDigits(60) << "\r\n"
         << (incoming ? "in" : "out") << "\r\n"
         << (incoming ? inside : outside) << "\r\n"
         << number(65'536) << "\r\n"
         << (incoming ? outside : inside) << "\r\n"
         << number(65'536) << "\r\n"
         << services[random() % std::size(services)] << "\r\n";
  }
  return std::move(text).str();
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.rdbuf()->pubsetbuf(nullptr, 0);
  for (std::size_t at = 0; at < bytes.size(); at += kBlock) {
    file.write(bytes.data() + at, static_cast<std::streamsize>(std::min(kBlock, bytes.size() - at)));
  }
}

}  // namespace bench
