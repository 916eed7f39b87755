#pragma once

#include "XML/XMLSerializable.h"

#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <functional>
#include <sstream>
#include <string>

/// Short ways to say what the XML tests say often.
inline UString U(const std::string& text) {
    return {text, UString::kUTF8};
}

inline boost::shared_ptr<Kestrin::ContainerItem>
ReadDocument(const std::string& document, unsigned int language = Kestrin::kDefaultLanguage) {
    std::istringstream stream(document);
    return Kestrin::ReadContainerFromFile(&stream, language);
}

/// The container in a document whose elements are children of one container.
inline boost::shared_ptr<Kestrin::ContainerItem>
ReadElements(const std::string& elements, unsigned int language = Kestrin::kDefaultLanguage) {
    return ReadDocument("<resource_list><XSET name='s'>" + elements + "</XSET></resource_list>",
                        language);
}

template <typename ItemClass>
boost::shared_ptr<ItemClass> Child(const Kestrin::ContainerItem& container, std::size_t index) {
    return boost::dynamic_pointer_cast<ItemClass>(container.GetItems().at(index));
}

/// The names of the children, in order, each followed by a blank.
inline std::string ChildNames(const Kestrin::ContainerItem& container) {
    std::string names;
    for (const auto& item : container.GetItems())
        names += item->GetName().utf8_str() + " ";
    return names;
}

/// What the text item holds; "(none)" when there is no such item.
inline std::string TextOf(const Kestrin::ContainerItem& container, const std::string& name) {
    const auto item = container.GetUStringItem(U(name));
    return item ? item->GetValue().utf8_str() : "(none)";
}

/// What an operation prints when it throws -50; "(done)" when it does not.
inline std::string FailureOf(const std::function<void()>& operation) {
    CapturedOutput output;
    try {
        operation();
    } catch (int fault) {
        EXPECT_EQ(fault, -50);
        return output.Text();
    }
    return "(done)";
}
