#pragma once

#include <cstddef>

//! \brief The path of a source file for the log: its folder, a slash and its name.
//!
//! Computed at compile time, because `__FILE__` contains the path that the compiler was given; with Visual
//! Studio this is a path of the build machine.
template <std::size_t Size>
struct SourceFile {
    constexpr explicit SourceFile(const char (&path)[Size])
    {
        std::size_t begin = 0;
        std::size_t folder = 0;
        for (std::size_t i = 0; i < Size; ++i) {
            if (path[i] == '/' || path[i] == '\\') {
                begin = folder;
                folder = i + 1;
            }
        }
        for (std::size_t i = begin; i < Size; ++i)
            text[i - begin] = path[i] == '\\' ? '/' : path[i];
    }

    char text[Size] = {};
};

//! The current source file, for a log line.
#define NELVO_SOURCE_FILE                                                                                    \
    []() -> const char* {                                                                                    \
        static constexpr SourceFile file(__FILE__);                                                          \
        return file.text;                                                                                    \
    }()
