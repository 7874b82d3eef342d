#pragma once

//! \file
//! \brief The version of these headers.
//!
//! INelvoSDKPlugin::GetVersion returns the version of the loaded library.

//! The version as a number, `major << 16 | minor << 8 | patch`, for comparisons in `#if`.
#define NELVO_SDK_VERSION 0x010000

//! The version as text, "major.minor.patch".
#define NELVO_SDK_VERSION_STRING "1.0.0"
