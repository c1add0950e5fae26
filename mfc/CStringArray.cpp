#include <afxcoll.h>

#include <algorithm>

void CStringArray::SetAtGrow(INT_PTR index, const CString& text)
{
    CString copy(text); // the text may lie in an element that moves
    if (index >= GetSize()) SetSize(index + 1);
    ElementAt(index) = std::move(copy);
}

INT_PTR CStringArray::Add(const CString& text)
{
    m_items.emplace_back(text);
    return GetUpperBound();
}

INT_PTR CStringArray::Append(const CStringArray& source)
{
    const INT_PTR first = GetSize();
    const size_t count = source.m_items.size(); // read first: an array may append itself
    m_items.reserve(m_items.size() + count);
    std::copy_n(source.m_items.begin(), count, std::back_inserter(m_items));
    return first;
}

void CStringArray::Copy(const CStringArray& source)
{
    m_items = source.m_items;
}

void CStringArray::InsertAt(INT_PTR index, const CString& text, INT_PTR count)
{
    // The text may lie in an element that moves.
    const CString copy(text); // NOLINT(performance-unnecessary-copy-initialization)
    if (index > GetSize()) SetSize(index);
    m_items.insert(m_items.begin() + index, static_cast<size_t>(std::max<INT_PTR>(count, 0)), copy);
}

void CStringArray::RemoveAt(INT_PTR index, INT_PTR count)
{
    if (index < 0 || index >= GetSize() || count <= 0) return;
    const auto first = m_items.begin() + index;
    m_items.erase(first, first + std::min(count, GetSize() - index));
}

void CStringArray::SetSize(INT_PTR size)
{
    m_items.resize(static_cast<size_t>(std::max<INT_PTR>(size, 0)));
}
