#pragma once

#include <cstddef>

//! \brief A source file's path as the log carries it: its folder and its name, with a slash between them.
//!
//! Made at compile time, because `__FILE__` holds whatever path the compiler was given, with Visual Studio
//! that of the build machine.
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

//! The present source file, for a line of the log.
#define NELVO_SOURCE_FILE                                                                                    \
    []() -> const char* {                                                                                    \
        static constexpr SourceFile file(__FILE__);                                                          \
        return file.text;                                                                                    \
    }()
