#include "RandomDocument.h"

#include <algorithm>

std::wstring PlainElement::Attribute(const std::string& attribute) const
{
    for (const auto& [key, value] : attributes)
        if (key == attribute) return value;
    return {};
}

const PlainElement* PlainElement::Child(const std::string& child) const
{
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](const PlainElement& each) { return each.name == child; });
    return found == children.end() ? nullptr : &*found;
}

const std::vector<std::wstring>& RandomDocument::ButtonNames()
{
    // Names that differ by case, by a blank, by the writing of an accent, by a prefix, or only
    // behind a long common start; and names beyond the basic plane, and above it in UTF-16.
    static const std::vector<std::wstring> names{L"",
                                                 L"a",
                                                 L"A",
                                                 L" a",
                                                 L"a ",
                                                 L"ab",
                                                 L"\u00E9",
                                                 L"e\u0301",
                                                 L"\uFF41",
                                                 L"\U0001F600",
                                                 L"\U0001F601",
                                                 L"\uFFFD",
                                                 L"a\nb",
                                                 L"a\tb",
                                                 L"a b",
                                                 L"<&>\"'",
                                                 L"]]>",
                                                 L"--",
                                                 L"Freeze",
                                                 L"freeze",
                                                 L"FREEZE",
                                                 L"Freeze2",
                                                 L"Freez",
                                                 L"\u0130",
                                                 L"i",
                                                 L"I",
                                                 L"\u0131",
                                                 L"\u00DF",
                                                 L"ss",
                                                 L"0",
                                                 std::wstring(300, L'x'),
                                                 std::wstring(299, L'x') + L"y",
                                                 std::wstring(301, L'x'),
                                                 L"Console.Panel.Page1.Key1",
                                                 L"Console.Panel.Page1.Key2",
                                                 L"Console.Panel.Page2.Key1"};
    return names;
}

PlainElement RandomDocument::Buttons(int count)
{
    PlainElement root{AnyOf<std::string>({"ButtonActions", "x", "_:y"}), {}, {}};
    for (int i = 0; i < count; ++i)
        root.children.push_back(Button());
    return root;
}

PlainElement RandomDocument::Button()
{
    PlainElement button{AnyOf<std::string>({"Button", "Rotary", "Push1", "States"}), {}, {}};
    if (!OneIn(12)) button.attributes.emplace_back("name", AnyOf(ButtonNames()));
    if (OneIn(4)) AddActionAttributes(button);
    for (unsigned i = Pick(7); i > 0; --i)
        button.children.push_back(ActionElement());
    for (unsigned i = Pick(3); i > 0; --i)
        button.children.push_back(States());
    Shuffle(button);
    return button;
}

PlainElement RandomDocument::ActionElement()
{
    PlainElement element{
        AnyOf<std::string>({"Push1", "Push2", "Decrement", "Increment", "push1", "Push3"}), {}, {}};
    AddActionAttributes(element);
    if (OneIn(2)) element.attributes.emplace_back("name", AnyOf(ButtonNames()));
    if (OneIn(8)) element.children.push_back(States());
    Shuffle(element);
    return element;
}

PlainElement RandomDocument::States()
{
    PlainElement states{AnyOf<std::string>({"States", "States", "states"}), {}, {}};
    for (unsigned i = Pick(6); i > 0; --i) {
        PlainElement state{AnyOf<std::string>({"State", "s"}), {}, {}};
        AddActionAttributes(state);
        states.children.push_back(state);
    }
    return states;
}

PlainElement RandomDocument::DerivedStates(int count)
{
    PlainElement root{"states", {}, {}};
    for (int i = 0; i < count; ++i)
        root.children.push_back(DerivedState());
    return root;
}

PlainElement RandomDocument::DerivedState()
{
    PlainElement state = States();
    AddActionAttributes(state);
    if (!OneIn(4))
        state.attributes.emplace_back(
            "combine", AnyOf<std::wstring>({L"Or", L"Or", L"And", L"or", L"OR", L" Or", L""}));
    Shuffle(state);
    return state;
}

void RandomDocument::AddActionAttributes(PlainElement& element)
{
    if (!OneIn(8))
        element.attributes.emplace_back(
            "actionType", AnyOf<std::wstring>({L"Imaging", L"Mode", L"Lamp", L"Mode", L"Lamp",
                                               L"Empty", L"mode", L"", L"None", L"-1"}));
    if (!OneIn(8))
        element.attributes.emplace_back(
            "action", AnyOf<std::wstring>({L"Freeze", L"Depth", L"B", L"A", L"C", L"D", L"M", L"B",
                                           L"freeze", L"", L"0"}));
    if (OneIn(3))
        element.attributes.emplace_back(
            "actionParam",
            AnyOf<std::wstring>({L"0", L"1", L"-1", L" 7 ", L"+8", L"2147483647", L"-2147483648",
                                 L"2147483648", L"", L"x", L"1.5", L"1 2", L"\u0661"}));
}

void RandomDocument::Shuffle(PlainElement& element)
{
    std::shuffle(element.attributes.begin(), element.attributes.end(), m_random);
    std::shuffle(element.children.begin(), element.children.end(), m_random);
}

std::string RandomDocument::ToXml(const PlainElement& root)
{
    std::string xml = OneIn(2) ? "<?xml version='1.0' encoding='UTF-8'?>\n" : "";
    if (OneIn(4)) xml += "<!DOCTYPE x [<!ENTITY a 'b'>]>";
    Write(root, xml);
    return xml + "\n<!-- end -->";
}

void RandomDocument::Write(const PlainElement& element, std::string& xml)
{
    xml += '<' + element.name;
    for (const auto& [key, value] : element.attributes) {
        const char quote = OneIn(2) ? '"' : '\'';
        xml += (OneIn(5) ? "\r\n\t" : " ") + key + (OneIn(5) ? " = " : "=") + quote;
        WriteText(value, xml);
        xml += quote;
    }
    if (OneIn(9)) xml += " unknown='1'";
    if (element.children.empty() && OneIn(2)) {
        xml += "/>";
        return;
    }
    xml += '>';
    for (const PlainElement& child : element.children) {
        WriteNoise(xml);
        Write(child, xml);
    }
    WriteNoise(xml);
    xml += "</" + element.name + '>';
}

void RandomDocument::WriteNoise(std::string& xml)
{
    switch (Pick(12)) {
    case 0: xml += "<!-- <Push1 actionParam='5'/> -->"; break;
    case 1: xml += "<?Push1 actionParam='5'?>"; break;
    case 2: xml += "<![CDATA[<States/>]]>"; break;
    case 3: xml += "\r\n  text &amp; &#x20AC; ]] &gt; "; break;
    default: break;
    }
}

void RandomDocument::WriteText(const std::wstring& text, std::string& xml)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned long code = text[i];
        if (code >= 0xD800 && code < 0xDC00)
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00UL);
        const bool plain = (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') ||
                           (code >= 'a' && code <= 'z');
        if (plain && !OneIn(50))
            xml += static_cast<char>(code);
        else
            xml += "&#" + std::to_string(code) + ';';
    }
}

void RandomDocument::Damage(std::string& xml, unsigned changes)
{
    for (; changes > 0; --changes) {
        const std::size_t at = Pick(xml.size());
        switch (Pick(3)) {
        case 0: xml[at] = static_cast<char>(Pick(256)); break;
        case 1: xml.erase(at, Pick(40)); break;
        default: xml.insert(at, xml.substr(Pick(xml.size()), Pick(200)));
        }
    }
}
