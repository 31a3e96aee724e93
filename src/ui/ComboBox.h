#pragma once

#include "ui/Choice.h"
