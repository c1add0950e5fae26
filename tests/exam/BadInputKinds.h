#pragma once

#include "BadInputPlace.h"

#include <functional>
#include <string>
#include <vector>

// These kinds of files are opened or found by the application, or given to it.
namespace exam::bad_input {

enum class Harm
{
    missing,
    folder,
    device,
    empty,
    oneByte,
    otherKind,
    locked,
    cut,
    random
};

// A kind of file, and how it is used.
struct Kind
{
    const char* name;
    std::wstring file; // below the folder
    std::function<void(Place&)> write;
    std::function<std::wstring(Place&, const std::wstring& path)> use; // the sentence
    std::vector<Harm> harmless = {};                                   // that need no sentence
    bool isRepaired = false; // the file may be whole afterwards
};

std::vector<Kind> Kinds();

} // namespace exam::bad_input
