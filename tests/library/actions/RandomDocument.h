#pragma once

#include <pro_actions/ActionStateInfo.h>

#include <map>
#include <optional>
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

    // Changes, removes or repeats some bytes of a document.
    void Damage(std::string& xml, unsigned changes);

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

// ---- The plain reference

// Finds the numbers of TestVocabulary's names in the plain way.
inline int PlainType(const std::wstring& name)
{
    static const std::map<std::wstring, int> types{
        {L"Imaging", 1}, {L"Mode", 2}, {L"Empty", 0}, {L"Lamp", 9}};
    const auto found = types.find(name);
    return found == types.end() ? -1 : found->second;
}

inline int PlainAction(int type, const std::wstring& name)
{
    static const std::map<std::pair<int, std::wstring>, int> actions{
        {{1, L"Freeze"}, 0}, {{1, L"Depth"}, 7},  {{2, L"B"}, 0},
        {{2, L"M"}, 1},      {{2, L"Freeze"}, 3}, {{9, L"A"}, 0},
        {{9, L"B"}, 1},      {{9, L"C"}, 2},      {{9, L"D"}, 3}};
    const auto found = actions.find({type, name});
    return found == actions.end() ? -1 : found->second;
}

// The number of a text that RandomDocument uses for parameters.
inline int PlainParam(const std::wstring& text)
{
    static const std::map<std::wstring, int> params{{L"1", 1},
                                                    {L"-1", -1},
                                                    {L" 7 ", 7},
                                                    {L"+8", 8},
                                                    {L"2147483647", 2147483647},
                                                    {L"-2147483648", -2147483647 - 1}};
    const auto found = params.find(text);
    return found == params.end() ? 0 : found->second;
}

inline std::optional<ActionStateInfo> PlainState(const PlainElement& element)
{
    const int type = PlainType(element.Attribute("actionType"));
    const int action = PlainAction(type, element.Attribute("action"));
    if (type == -1 || action == -1) return std::nullopt;
    return ActionStateInfo{static_cast<ActionType>(type), action,
                           PlainParam(element.Attribute("actionParam"))};
}
