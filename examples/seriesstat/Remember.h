#pragma once

/// \file
/// The one thing that the tool writes into a configuration.

#include <string>

namespace seriesstat
{

/// Stores the quantity in the user's own file of the configuration `name`, which is made if it is missing, and returns
/// the path of the file.
///
/// Everything else that this file says stays; its comments, blank lines and order do not, since it is written anew from
/// its entries. It is not written if it names that quantity already. What other files of the configuration say does not
/// get into it, so that it goes on to hold for the user when somebody changes it there.
///
/// Throws a `RuntimeException` that tells why it could not be done: a text that the format cannot hold (with a sign
/// `#`, a double quote or a control character), a user without a directory, a file that cannot be read or written. A
/// file that cannot be read is left alone.
std::string rememberQuantity(const std::string& name, const std::string& quantity);

} // namespace seriesstat
