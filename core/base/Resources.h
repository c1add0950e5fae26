#pragma once

/// The numbers of the program's resources. The resource compiler reads them too, so they are
/// macros.
#define IDI_EXAM 1
#define IDR_EXAM_PICTURE 2
