// Every public class of the plotvane_wx library: the wxWidgets backend, on
// top of everything in plotvane.
#pragma once

#include <plotvane/plotvane.h>
#include <plotvane/platform/wx/WxBackend.h>
#include <plotvane/platform/wx/WxHost.h>
