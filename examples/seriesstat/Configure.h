#pragma once

/// \file
/// From the entries of the configuration to settings.

#include "Settings.h"

#include <kelvobase/ConfigFile.h>

#include <string>

namespace seriesstat
{

/// Sets what `config` says and leaves the rest. Nothing is passed over: what is no setting, or does not fit, throws a
/// `RuntimeException` that begins with `name` and tells section, key, value and what is expected; settings in front of
/// it have been taken then.
///
/// An entry without a value is a mistake, but for flags: `header` alone means yes. So is an empty one, because a sign
/// `#` begins a comment anywhere in a line: `comment = #` is read as `comment =`, which must not mean something else.
/// The empty key, which a line of blanks leaves behind, means nothing.
void configure(Settings& settings, const KelvoBase::ConfigFile& config, const std::string& name);

/// The directories where a configuration is searched, for messages: `"/opt/lab/etc"; "/home/me/.config/dravo2/etc"`.
std::string searchedPlaces();

} // namespace seriesstat
