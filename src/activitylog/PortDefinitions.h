#pragma once

#include <string>

#include "activitylog/CPortDefinition.h"
#include "base/KeyedCollection.h"

/// By the port's number as text.
using PortDefinitions = base::KeyedCollection<CPortDefinition>;

/// Adds what a file of pairs of lines defines: a port, which is the number that its line begins with, and the
/// description. The first definition of a port stands; a port that fits no 32 bits is left out, and so is one
/// whose description isn't there. Fails when the file can't be read; what was read until then has been added.
void ReadPortDefinitions(const std::string& sFullPathName, PortDefinitions& ccPortDefinitions);
