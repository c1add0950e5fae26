#include <afxcoll.h>

#include <algorithm>

struct CStringList::Node
{
    Node* next = nullptr;
    Node* previous = nullptr;
    CString text;

    POSITION Position() { return reinterpret_cast<POSITION>(this); }
    static Node* From(POSITION position) { return reinterpret_cast<Node*>(position); }
};

CStringList::CStringList(INT_PTR blockSize) : m_blockSize(std::max<INT_PTR>(blockSize, 1)) {}

CStringList::~CStringList() = default;

POSITION CStringList::GetHeadPosition() const noexcept
{
    return reinterpret_cast<POSITION>(m_head);
}

POSITION CStringList::GetTailPosition() const noexcept
{
    return reinterpret_cast<POSITION>(m_tail);
}

const CString& CStringList::GetNext(POSITION& position) const
{
    const Node* node = Node::From(position);
    position = reinterpret_cast<POSITION>(node->next);
    return node->text;
}

const CString& CStringList::GetPrev(POSITION& position) const
{
    const Node* node = Node::From(position);
    position = reinterpret_cast<POSITION>(node->previous);
    return node->text;
}

CString& CStringList::GetAt(POSITION position)
{
    return Node::From(position)->text;
}

const CString& CStringList::GetAt(POSITION position) const
{
    return Node::From(position)->text;
}

POSITION CStringList::AddHead(const CString& text)
{
    return Insert(nullptr, m_head, text)->Position();
}

POSITION CStringList::AddTail(const CString& text)
{
    return Insert(m_tail, nullptr, text)->Position();
}

POSITION CStringList::InsertBefore(POSITION position, const CString& text)
{
    if (!position) return AddHead(text);
    Node* const node = Node::From(position);
    return Insert(node->previous, node, text)->Position();
}

POSITION CStringList::InsertAfter(POSITION position, const CString& text)
{
    if (!position) return AddTail(text);
    Node* const node = Node::From(position);
    return Insert(node, node->next, text)->Position();
}

CString CStringList::RemoveHead()
{
    return m_head ? Remove(m_head) : CString();
}

CString CStringList::RemoveTail()
{
    return m_tail ? Remove(m_tail) : CString();
}

void CStringList::RemoveAt(POSITION position)
{
    if (position) Remove(Node::From(position));
}

void CStringList::RemoveAll() noexcept
{
    m_blocks.clear();
    m_head = m_tail = m_free = nullptr;
    m_count = 0;
}

POSITION CStringList::Find(LPCWSTR text, POSITION startAfter) const
{
    Node* node = startAfter ? Node::From(startAfter)->next : m_head;
    while (node && node->text != text)
        node = node->next;
    return reinterpret_cast<POSITION>(node);
}

POSITION CStringList::FindIndex(INT_PTR index) const noexcept
{
    if (index < 0 || index >= m_count) return nullptr;
    Node* node = m_head;
    while (index-- > 0)
        node = node->next;
    return node->Position();
}

CStringList::Node* CStringList::Insert(Node* previous, Node* next, const CString& text)
{
    CString copy(text);
    Node* const node = Allocate();
    node->text = std::move(copy);
    node->previous = previous;
    node->next = next;
    (previous ? previous->next : m_head) = node;
    (next ? next->previous : m_tail) = node;
    ++m_count;
    return node;
}

// Takes a free node. A failed allocation changes nothing.
CStringList::Node* CStringList::Allocate()
{
    if (!m_free) {
        m_blocks.push_back(std::make_unique<Node[]>(static_cast<size_t>(m_blockSize)));
        for (INT_PTR i = 0; i < m_blockSize; ++i) {
            Node& node = m_blocks.back()[static_cast<size_t>(i)];
            node.next = m_free;
            m_free = &node;
        }
    }
    Node* const node = m_free;
    m_free = node->next;
    return node;
}

CString CStringList::Remove(Node* node)
{
    CString text = std::move(node->text);
    node->text.Empty();
    (node->previous ? node->previous->next : m_head) = node->next;
    (node->next ? node->next->previous : m_tail) = node->previous;
    node->next = m_free;
    m_free = node;
    if (--m_count == 0) RemoveAll(); // gives the blocks back
    return text;
}
