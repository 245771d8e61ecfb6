#pragma once

/// \file
/// Everything of `libkelvobase` at once. A tool as a rule includes `Application.h` and what it needs besides.

#include <kelvobase/Any.h>
#include <kelvobase/Application.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/ConnectionStates.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Export.h>
#include <kelvobase/Forward.h>
#include <kelvobase/Globals.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>
#include <kelvobase/Time.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>
