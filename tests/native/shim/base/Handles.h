#pragma once

// The owners of base/Handles.h that the portable sources have as members. Nothing is ever held.

namespace base {

class File
{
};

} // namespace base
