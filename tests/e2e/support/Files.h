#pragma once

#include <string>

/// The full path of a file of the build, written from the folder of the test program.
std::string BuiltFile(const std::string& relative);
/// Registers a plug-in of the build. Throws std::runtime_error with its path when that fails.
void RegisterPlugIn(const std::string& relative);

/// The whole content, byte for byte; "(no file)" without one.
std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& content);

/// The text with each occurrence of a part replaced.
std::string Replaced(std::string text, const std::string& part, const std::string& instead);
