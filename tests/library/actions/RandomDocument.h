#pragma once

#include <random>
#include <string>
#include <utility>
#include <vector>

// An element as plain data, from which documents are made and which the plain reference reads.
struct PlainElement
{
    std::string name;
    std::vector<std::pair<std::string, std::wstring>> attributes;
    std::vector<PlainElement> children;

    // The attribute's text; empty when it is missing.
    std::wstring Attribute(const std::string& attribute) const;

    // The first child of that name; null when there is none.
    const PlainElement* Child(const std::string& child) const;
};

// Makes documents in the shape of "ButtonActions.xml" and "button_states.xml", with much that is
// odd and nothing that is not well-formed.
class RandomDocument
{
public:
    explicit RandomDocument(unsigned seed) : m_random(seed) {}

    PlainElement Buttons(int count);
    PlainElement DerivedStates(int count);

    // The document as bytes of UTF-8, with comments, texts and instructions in between.
    std::string ToXml(const PlainElement& root);

    // The names that buttons are drawn from, and some that no button has.
    static const std::vector<std::wstring>& ButtonNames();

    unsigned Pick(std::size_t count) { return static_cast<unsigned>(m_random() % count); }

private:
    bool OneIn(unsigned count) { return Pick(count) == 0; }
    template <typename T>
    const T& AnyOf(const std::vector<T>& values)
    {
        return values[Pick(values.size())];
    }

    void AddActionAttributes(PlainElement& element);
    PlainElement Button();
    PlainElement ActionElement();
    PlainElement States();
    PlainElement DerivedState();
    void Shuffle(PlainElement& element);

    void Write(const PlainElement& element, std::string& xml);
    void WriteNoise(std::string& xml);
    void WriteText(const std::wstring& text, std::string& xml);

    std::mt19937 m_random;
};
