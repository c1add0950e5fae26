#include <Utils_Statics/AviOwners.h>

void AviFileRelease::operator()(IAVIFile* file) const noexcept
{
    AVIFileRelease(file);
    AVIFileExit();
}

void AviStreamRelease::operator()(IAVIStream* stream) const noexcept
{
    AVIStreamRelease(stream);
}
