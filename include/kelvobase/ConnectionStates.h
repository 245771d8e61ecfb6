#pragma once

/// \file
/// States of connections (`CS_`) and cursors (`CURS_`), shared by the tools that talk to data bases.
/// No part of the library reads them. Errors are negative.

namespace KelvoBase
{

inline constexpr int CS_CONNECTED = 1;
inline constexpr int CS_UNCONNECTED = -1;
inline constexpr int CS_ERROR = -2;
inline constexpr int CS_INITIALIZATION_ERROR = -3;
inline constexpr int CS_OPEN_ERROR = -4;
inline constexpr int CS_CLOSE_ERROR = -5;

inline constexpr int CURS_OPENED = 1;
inline constexpr int CURS_CLOSED = 0;
inline constexpr int CURS_UNUSED = -1;
inline constexpr int CURS_ERROR = -2;
inline constexpr int CURS_OPEN_ERROR = -3;
inline constexpr int CURS_CLOSE_ERROR = -4;
inline constexpr int CURS_INVALID_CONN_HANDLE = -5;

} // namespace KelvoBase
