#pragma once

#include <qor_utils/ULine.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>

#include <afxwin.h>

#include <vector>

// Lines drawn with MoveTo and LineTo.
using Strokes = std::vector<ULine>;

// An arc as the device got it. The box is normalised and excludes its right and bottom edge, which
// GDI leaves out.
struct RecordedArc
{
    URect box;
    UPoint start;
    UPoint end;

    bool operator==(const RecordedArc&) const = default;
};

// A device context that records every drawing, to the pixel.
class DrawingRecorder
{
public:
    DrawingRecorder() { Begin(); }
    ~DrawingRecorder()
    {
        m_dc.Detach();
        DeleteEnhMetaFile(CloseEnhMetaFile(m_metafile));
    }
    DrawingRecorder(const DrawingRecorder&) = delete;
    DrawingRecorder& operator=(const DrawingRecorder&) = delete;

    CDC* Dc() { return &m_dc; }

    // The lines drawn since the last call of either function.
    Strokes TakeStrokes() { return Take().strokes; }
    std::vector<RecordedArc> TakeArcs() { return Take().arcs; }

private:
    struct Reader
    {
        POINTL at{};
        Strokes strokes;
        std::vector<RecordedArc> arcs;

        static int CALLBACK Record(HDC, HANDLETABLE*, const ENHMETARECORD* record, int,
                                   LPARAM context)
        {
            auto& reader = *reinterpret_cast<Reader*>(context);
            if (record->iType == EMR_ARC) reader.AddArc(*reinterpret_cast<const EMRARC*>(record));
            if (record->iType == EMR_MOVETOEX || record->iType == EMR_LINETO)
                reader.Go(reinterpret_cast<const EMRLINETO*>(record)->ptl,
                          record->iType == EMR_LINETO);
            return 1;
        }

        void AddArc(const EMRARC& arc)
        {
            arcs.push_back({{arc.rclBox.left, arc.rclBox.top, arc.rclBox.right, arc.rclBox.bottom},
                            {arc.ptlStart.x, arc.ptlStart.y},
                            {arc.ptlEnd.x, arc.ptlEnd.y}});
        }

        void Go(const POINTL& to, bool drawing)
        {
            if (drawing) strokes.push_back({at.x, at.y, to.x, to.y});
            at = to;
        }
    };

    void Begin()
    {
        m_metafile = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
        m_dc.Attach(m_metafile);
    }

    Reader Take()
    {
        m_dc.Detach();
        const HENHMETAFILE file = CloseEnhMetaFile(m_metafile);
        Reader reader;
        EnumEnhMetaFile(nullptr, file, &Reader::Record, &reader, nullptr);
        DeleteEnhMetaFile(file);
        Begin();
        return reader;
    }

    HDC m_metafile = nullptr;
    CDC m_dc;
};
