#pragma once

#define IDI_ROUTER 1
#define IDD_CONFIGURE 2
