#include "JpegDecoder.h"

#include <windows.h>
#include <wincodec.h>

#include <cstring>
#include <memory>
#include <new>

namespace mjpg {

namespace {

// A thread that uses COM in the other way already may go on in its own.
class ComUse
{
public:
    ComUse() : m_result(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ~ComUse()
    {
        if (SUCCEEDED(m_result)) CoUninitialize();
    }
    ComUse(const ComUse&) = delete;
    ComUse& operator=(const ComUse&) = delete;

private:
    HRESULT m_result;
};

template <class Interface>
class Com
{
public:
    Com() = default;
    ~Com()
    {
        if (m_object) m_object->Release();
    }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;
    Interface** operator&() { return &m_object; }
    Interface* operator->() const { return m_object; }
    operator Interface*() const { return m_object; }

private:
    Interface* m_object = nullptr;
};

// The first frame of the image, as pixels of the target's kind.
class Image
{
public:
    bool open(const std::uint8_t* data, std::size_t size, const GUID& pixelFormat)
    {
        return SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                          __uuidof(IWICImagingFactory), reinterpret_cast<void**>(&m_factory))) &&
               SUCCEEDED(m_factory->CreateStream(&m_stream)) &&
               SUCCEEDED(m_stream->InitializeFromMemory(const_cast<BYTE*>(data), static_cast<DWORD>(size))) &&
               SUCCEEDED(m_factory->CreateDecoder(GUID_ContainerFormatJpeg, nullptr, &m_decoder)) &&
               SUCCEEDED(m_decoder->Initialize(m_stream, WICDecodeMetadataCacheOnDemand)) &&
               SUCCEEDED(m_decoder->GetFrame(0, &m_frame)) &&
               SUCCEEDED(m_factory->CreateFormatConverter(&m_converter)) &&
               SUCCEEDED(m_converter->Initialize(m_frame, pixelFormat, WICBitmapDitherTypeNone, nullptr, 0,
                                                 WICBitmapPaletteTypeCustom));
    }

    bool hasSize(int width, int height) const
    {
        UINT ownWidth = 0;
        UINT ownHeight = 0;
        return SUCCEEDED(m_converter->GetSize(&ownWidth, &ownHeight)) && ownWidth == static_cast<UINT>(width) &&
               ownHeight == static_cast<UINT>(height);
    }

    bool read(std::uint8_t* pixels, std::size_t stride, std::size_t size) const
    {
        return SUCCEEDED(m_converter->CopyPixels(nullptr, static_cast<UINT>(stride), static_cast<UINT>(size), pixels));
    }

private:
    Com<IWICImagingFactory> m_factory;
    Com<IWICStream> m_stream;
    Com<IWICBitmapDecoder> m_decoder;
    Com<IWICBitmapFrameDecode> m_frame;
    Com<IWICFormatConverter> m_converter;
};

} // namespace

bool decodeJpeg(const std::uint8_t* data, std::size_t size, const TargetFrame& target)
{
    if (size > UINT32_MAX) return false;
    const ComUse com;
    Image image;
    const GUID& format = target.bytesPerPixel == 4 ? GUID_WICPixelFormat32bppBGR : GUID_WICPixelFormat24bppBGR;
    if (!image.open(data, size, format) || !image.hasSize(target.width, target.height)) return false;

    const std::size_t rowBytes =
        static_cast<std::size_t>(target.width) * static_cast<std::size_t>(target.bytesPerPixel);
    const std::size_t stride = (rowBytes + 3) / 4 * 4;
    const auto rows = static_cast<std::size_t>(target.height);
    const std::unique_ptr<std::uint8_t[]> pixels(new (std::nothrow) std::uint8_t[stride * rows]);
    if (!pixels || !image.read(pixels.get(), stride, stride * rows)) return false;
    for (std::size_t row = 0; row < rows; ++row)
        std::memcpy(target.topRow + static_cast<std::ptrdiff_t>(row) * target.stride, pixels.get() + row * stride,
                    rowBytes);
    return true;
}

} // namespace mjpg
