#pragma once

#include <afx.h>

#include <memory>
#include <vector>

/// A growing array of texts. Indexes start at 0. An index outside the array is a caller's mistake
/// (trapped in checked builds) unless a member says otherwise. Texts may contain null characters.
class CStringArray : public CObject
{
public:
    /// The number of elements.
    INT_PTR GetSize() const noexcept { return static_cast<INT_PTR>(m_items.size()); }
    INT_PTR GetCount() const noexcept { return GetSize(); }
    bool IsEmpty() const noexcept { return m_items.empty(); }
    /// The last index; -1 for an empty array.
    INT_PTR GetUpperBound() const noexcept { return GetSize() - 1; }

    /// The element at an index.
    const CString& GetAt(INT_PTR index) const { return m_items[static_cast<size_t>(index)]; }
    CString& ElementAt(INT_PTR index) { return m_items[static_cast<size_t>(index)]; }
    const CString& operator[](INT_PTR index) const { return GetAt(index); }
    CString& operator[](INT_PTR index) { return ElementAt(index); }
    /// The elements one behind the other; valid until the array changes.
    const CString* GetData() const noexcept { return m_items.data(); }
    CString* GetData() noexcept { return m_items.data(); }

    /// Replaces the element at an index.
    void SetAt(INT_PTR index, const CString& text) { ElementAt(index) = text; }
    /// Grows the array with empty texts up to `index` where needed.
    MFC_API void SetAtGrow(INT_PTR index, const CString& text);
    /// Returns the index of the new element.
    MFC_API INT_PTR Add(const CString& text);
    /// Returns the index of the first element appended.
    MFC_API INT_PTR Append(const CStringArray& source);
    /// Replaces all elements by copies.
    MFC_API void Copy(const CStringArray& source);
    /// The array first grows with empty texts up to an `index` beyond its end.
    MFC_API void InsertAt(INT_PTR index, const CString& text, INT_PTR count = 1);
    /// Removes up to `count` elements from `index` on; an index outside the array removes none.
    MFC_API void RemoveAt(INT_PTR index, INT_PTR count = 1);
    /// Cuts the array, or appends empty texts.
    MFC_API void SetSize(INT_PTR size);
    /// Leaves the array empty.
    void RemoveAll() noexcept { m_items.clear(); }

    /// Range-based loops call these.
    auto begin() const noexcept { return m_items.begin(); }
    auto end() const noexcept { return m_items.end(); }

private:
    std::vector<CString> m_items;
};

/// A doubly linked list of texts. A POSITION stays valid until its own element is removed. Null
/// positions, and the ends of an empty list, are a caller's mistakes unless a member says
/// otherwise. Texts may contain null characters.
class MFC_API CStringList : public CObject
{
public:
    /// Elements are allocated in blocks of `blockSize`.
    explicit CStringList(INT_PTR blockSize = 10);
    ~CStringList() override;

    /// The number of elements.
    INT_PTR GetCount() const noexcept { return m_count; }
    INT_PTR GetSize() const noexcept { return m_count; }
    bool IsEmpty() const noexcept { return m_count == 0; }

    /// Null for an empty list.
    POSITION GetHeadPosition() const noexcept;
    POSITION GetTailPosition() const noexcept;
    /// The element at `position`, which then moves to the next (null after the last).
    const CString& GetNext(POSITION& position) const;
    /// The element at `position`, which then moves to the previous (null after the first).
    const CString& GetPrev(POSITION& position) const;
    /// The element at a position.
    CString& GetAt(POSITION position);
    const CString& GetAt(POSITION position) const;
    /// Replaces the text at a position.
    void SetAt(POSITION position, const CString& text) { GetAt(position) = text; }
    /// The first and the last element.
    const CString& GetHead() const { return GetAt(GetHeadPosition()); }
    const CString& GetTail() const { return GetAt(GetTailPosition()); }

    /// Return the position of the new element.
    POSITION AddHead(const CString& text);
    POSITION AddTail(const CString& text);
    /// InsertBefore adds at the head for a null position, and InsertAfter at the tail.
    POSITION InsertBefore(POSITION position, const CString& text);
    POSITION InsertAfter(POSITION position, const CString& text);
    /// Returns the removed text; an empty one for an empty list.
    CString RemoveHead();
    CString RemoveTail();
    /// Removes the element at a position.
    void RemoveAt(POSITION position);
    /// Leaves the list empty and without memory.
    void RemoveAll() noexcept;

    /// The first equal element after `startAfter` (null: from the head); null when there is none.
    POSITION Find(LPCWSTR text, POSITION startAfter = nullptr) const;
    /// Null when there is no such index.
    POSITION FindIndex(INT_PTR index) const noexcept;

private:
    struct Node;

    Node* Insert(Node* previous, Node* next, const CString& text);
    Node* Allocate();
    CString Remove(Node* node);

    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    Node* m_free = nullptr; // unused nodes of the blocks, linked by `next`
    INT_PTR m_count = 0;
    INT_PTR m_blockSize;
    std::vector<std::unique_ptr<Node[]>> m_blocks;
};
