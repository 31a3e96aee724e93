#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/Program.h"
#include "support/Recording.h"
#include "support/Settings.h"

/// Empty settings but for the title window, which would cost each test its seven seconds; the recording
/// plug-in registered; the program installed and not yet started.
class Scene : public testing::Test {
 protected:
  Scene() {
    settings::Clear();
    settings::Write("ShowSplashOnStartup", "False");
  }

  /// The recording plug-in stands selected, as after a save of the running version.
  static void SelectRecording() {
    settings::Write({{"Version", HARBOURLINE_VERSION},
                     {"RouterCount", "1"},
                     {"Router_1", Recording::kClass},
                     {"RouterClass", Recording::kClass}});
  }
  /// Starts the program with a selected recording plug-in and waits for the last thing that the start asks of
  /// it.
  bool StartWithRouter() {
    return program.StartAndWait() && WaitFor([this] { return !Activations().empty(); });
  }
  /// Stores profiles by name, the ports counting from 1000 by tens; those with a "+" in front are enabled.
  static void StoreProfiles(const std::vector<std::string>& names) {
    settings::Write("MapProfileCount", std::to_string(names.size()));
    int number = 0;
    for (std::string name : names) {
      const bool enabled = name.front() == '+';
      if (enabled) name.erase(0, 1);
      settings::WriteProfile(number + 1, name, 1000 + 10 * number, enabled);
      ++number;
    }
  }
  /// This computer's address as the plug-in was told, from a program that has started.
  std::string LocalAddress() const {
    const auto calls = recording.Calls("IServer_SetLogging");
    if (calls.empty()) return {};
    const std::size_t begin = calls[0].find('"') + 1;
    return calls[0].substr(begin, calls[0].rfind('"') - begin);
  }
  std::string LastOctet() const {
    const std::string address = LocalAddress();
    return address.substr(address.rfind('.') + 1);
  }
  std::vector<std::string> Activations() const { return recording.Calls("IServer_SetPortForwarding"); }
  std::string EmptyRequest() const {
    return "METHOD+GET (BYREF+ARRAY+DISPATCH [10..10] null, BYREF+I2 " + LastOctet() + ")";
  }

  Recording recording;
  Program program;
};
