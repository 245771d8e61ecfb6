#pragma once

/// \file
/// Everything of `libkelvobase` at once. A tool as a rule includes `Application.h` and what it needs besides. The
/// headers of `libkelvobase-xml` are not among them.

#include <kelvobase/Any.h>
#include <kelvobase/AnyFactory.h>
#include <kelvobase/Application.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/ConnectionStates.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Export.h>
#include <kelvobase/Forward.h>
#include <kelvobase/Globals.h>
#include <kelvobase/Literature.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/SHA1.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>
#include <kelvobase/TextFormatter.h>
#include <kelvobase/TextRep.h>
#include <kelvobase/Time.h>
#include <kelvobase/Timer.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>
