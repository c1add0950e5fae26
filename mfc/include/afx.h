#pragma once

#include <framework/export.h>

#include <atlstr.h>

#include <windows.h>

/// The root of the classes that are addressed by pointer. They are never copied, and may be deleted
/// through any base.
class CObject
{
public:
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

protected:
    CObject() = default;
};

struct __POSITION;

/// An element's position in a list; null for none.
using POSITION = __POSITION*;
