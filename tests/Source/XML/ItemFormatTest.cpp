#include "XML/XMLSerializable.h"

#include "tests/Source/XML/Documents.h"

namespace {

using namespace Kestrin;

/// What is written of a container with these elements, without layout and in single quotes.
std::string Rewritten(const std::string& elements) {
    std::string written = WriteSerializedString(*ReadElements(elements));
    std::erase_if(written, [](char c) { return c == '\t' || c == '\n'; });
    std::replace(written.begin(), written.end(), '"', '\'');
    const std::size_t begin = written.find("'s'>") + 4;
    return written.substr(begin, written.rfind("</XSET>") - begin);
}

TEST(ItemFormat, ReadsEveryTypeAndWritesItBack) {
    std::string document = R"(<?xml version="1.0" encoding="UTF-8"?>
<resource_list>
	<XSET name="s">
		<SINT name="i" value="-7"/>
		<DBLE name="d" value="2.500000"/>
		<OSTY name="o" value="TEXT"/>
		<TEXT name="t">a &lt; b</TEXT>
		<DATA name="r" size="20">
			000d1a2734414e5b6875828f9ca9b6c3
			d0ddeaf7
		</DATA>
		<TEXT name="b">XML_SPACE_ENCODE</TEXT>
		<XSET name="c"/>
	</XSET>
</resource_list>
)";
    const auto read = ReadDocument(document);
    EXPECT_EQ(Child<SInt32Item>(*read, 0)->GetValue(), -7);
    EXPECT_EQ(Child<DoubleItem>(*read, 1)->GetValue(), 2.5);
    EXPECT_EQ(Child<OSTypeItem>(*read, 2)->GetValue(), FourCharCode("TEXT"));
    EXPECT_EQ(WriteSerializedString(*read), document);

    read->AddItem(CreateRawData(U("n"), {}));
    Child<RawDataItem>(*read, 7)->SetComment(U("a--b---c-"));
    document.insert(document.find("\t</XSET>"), "\t\t<!--a-b-c- -->\n\t\t<DATA name=\"n\"/>\n");
    EXPECT_EQ(WriteSerializedString(*read), document);
}

TEST(ItemFormat, MakesTheBestOfUnusualElements) {
    const std::pair<const char*, const char*> elements[] = {
        // A value goes before the text; numbers wrap, four characters are filled up.
        {"<TEXT name='n' value=''>text</TEXT>", "<TEXT name='n'></TEXT>"},
        {"<SINT name='n' value='4294967297'/>", "<SINT name='n' value='1'/>"},
        {"<SINT name='n' value='-2147483648'/>", "<SINT name='n' value='-2147483648'/>"},
        {"<OSTY name='n' value='ab'/>", "<OSTY name='n' value='ab'/>"},
        // Blanks alone are layout, but for a single one.
        {"<TEXT name='n'> \n\t </TEXT>", "<TEXT name='n'></TEXT>"},
        {"<TEXT name='n'><![CDATA[ ]]></TEXT>", "<TEXT name='n'>XML_SPACE_ENCODE</TEXT>"},
        {"<TEXT name='n' value=' '/>", "<TEXT name='n'>XML_SPACE_ENCODE</TEXT>"},
        // A text ends where something else begins, and nothing behind it counts.
        {"<TEXT name='n'>one<!-- c -->two</TEXT>", "<TEXT name='n'>one</TEXT>"},
        {"<TEXT name='n'>one<?pi x?>two</TEXT>", "<TEXT name='n'>one</TEXT>"},
        {"<TEXT name='n'><?pi x?>  <!-- c --><![CDATA[<]]>&amp;&#x41;</TEXT>",
         "<TEXT name='n'>&lt;&amp;A</TEXT>"},
        {"<g>text<SINT name='in'/></g><SINT name='n' value='1'/>", "<SINT name='n' value='1'/>"},
        // Raw data has the size that the file gives.
        {"<DATA name='n' size='4'>a b:c d</DATA>", "<DATA name='n' size='4'>abcd0000</DATA>"},
        {"<DATA name='n' size='1'>abcdef</DATA>", "<DATA name='n' size='1'>ab</DATA>"},
        {"<DATA name='n'>ab</DATA>", "<DATA name='n' size='0'/>"},
        // Wrappers are looked through, other platforms are not.
        {"<a><TEXT name='n'>1</TEXT><b><SINT name='m'/></b></a>",
         "<TEXT name='n'>1</TEXT><SINT name='m' value='0'/>"},
        {"<TEXT name='n' value='4'><SINT name='in'/></TEXT>",
         "<SINT name='in' value='0'/><TEXT name='n'>4</TEXT>"},
        {"<SINT name='a' platform='Win3'><SINT name='in'/></SINT><g platform=''><SINT name='b'/>"
         "</g><TEXT name='c' platform='MacX'/>",
         "<TEXT name='c' platform='MacX'></TEXT>"},
        {"<TEXT size='9' name='n' lang='enus' x='&lt;1>'/>",
         "<TEXT name='n' lang='enus' x='&lt;1&gt;'></TEXT>"},
    };
    for (const auto& [read, written] : elements)
        EXPECT_EQ(Rewritten(read), written) << read;
    const std::string text = std::string(5000, ' ') + std::string(100'000, 'x') + "</TEXT>";
    EXPECT_EQ(Rewritten("<TEXT name='n'><!-- c -->" + text), "<TEXT name='n'>" + text);

    CapturedOutput output;
    EXPECT_EQ(Rewritten("<WHAT name='w'><TEXT name='n'/></WHAT>"), "<TEXT name='n'></TEXT>");
    EXPECT_EQ(output.Text(), "ParseSerialXML: unknown type!");
}

TEST(ItemFormat, KeepsTheWholeAttributeListOfAnItem) {
    const auto read = ReadElements("<DATA x:y='1' value='v' name='n' size='0' xmlns:x='urn:x'/>");
    std::string list;
    for (const AttributePair& pair : read->GetItems().front()->GetAttributes())
        list += pair.name.utf8_str() + "=" + pair.value.utf8_str() + " ";
    EXPECT_EQ(list, "xmlns:x=urn:x x:y=1 value=v name=n size=0 ");
}

TEST(ItemFormat, RefusesRawDataOfUnlikelySize) {
    CapturedOutput output;
    EXPECT_NO_THROW(ReadElements("<DATA name='r' size='1048578'>abcd</DATA>"));
    for (const std::string size : {"1048579", "4294967295", "-1", "99999999999999999999"})
        EXPECT_THROW(ReadElements("<DATA name='r' size='" + size + "'>abcd</DATA>"), int) << size;
    // What a document claims beyond its text is counted together.
    const std::string half = "<DATA name='r' size='700000'/>";
    EXPECT_NO_THROW(ReadElements(half));
    EXPECT_THROW(ReadElements(half + "<XSET name='g'>" + half + "</XSET>"), int);
}

TEST(ItemFormat, HasAContainerOrNothingForItsResult) {
    for (const char* document : {"<TEXT name='t'>x</TEXT>", "<resource_list/>",
                                 "<r><TEXT name='t'>x</TEXT><XSET name='s'/></r>"})
        EXPECT_EQ(ReadDocument(document), nullptr) << document;
    EXPECT_EQ(ReadContainerFromFile(nullptr, kDefaultLanguage), nullptr);
    EXPECT_EQ(ReadDocument("<XSET name='s'/>")->GetName(), U("s"));
}

TEST(ItemFormat, PrefersTheWantedLanguage) {
    const std::string entries =
        "<TEXT name='a' value='en'/><TEXT name='a' lang='frfr' value='fr'/>"
        "<TEXT name='b' value='en'/><SINT name='x'/><TEXT name='b' lang='frfr' value='fr'/>"
        "<TEXT name='c' value='en'/><TEXT name='c' lang='dede' value='de'/>"
        "<TEXT name='c' lang='frfr' value='fr'/><TEXT name='d' lang='frfr' value='fr'/>"
        "<SINT name='e'/><TEXT name='e' lang='frfr' value='fr'/>";
    const auto english = ReadElements(entries);
    EXPECT_EQ(ChildNames(*english), "a b x c e ");
    EXPECT_EQ(TextOf(*english, "a"), "en");

    // Only what directly follows its entry takes its place; "c" lost its entry to the German one.
    const auto french = ReadElements(entries, FourCharCode("frfr"));
    EXPECT_EQ(ChildNames(*french), "a b x b c c d e e ");
    for (const char* name : {"a", "b", "c", "d", "e"})
        EXPECT_EQ(TextOf(*french, name), "fr") << name;
}

} // namespace
