// The names of the matrix routines.
#include <gtest/gtest.h>

#include <windows.h>

namespace {

TEST(MatrixExportTest, TheRoutinesHaveTheirPlainNames)
{
    const HMODULE library = GetModuleHandleW(L"Utils_Statics.dll");
    ASSERT_NE(library, nullptr);
    for (const char* name : {"MAT_AT_Times_A", "MAT_SetMatrixElement", "MAT_MatrixVectorProduct",
                             "MAT_MakeIdentity", "MAT_MatrixProduct", "MAT_InvertMatrix",
                             "MAT_LeastSquares", "MAT_Transform", "MAT_GenerateRotationMatrix"})
        EXPECT_NE(GetProcAddress(library, name), nullptr) << name;
    EXPECT_EQ(GetProcAddress(library, "_MAT_MakeIdentity"), nullptr);
}

} // namespace
