#include "framework/zeb_xml.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "framework/text_convert.h"
#include "framework/thread_start.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scoped_temp_dir.h"

namespace {
template <class T>
std::unique_ptr<T> Own(T* p) {
    return std::unique_ptr<T>(p);
}
}  // namespace

TEST(ZebXml, NothingToReadLeavesTheOutputUntouched) {
    ZebXMLDocument doc;
    std::wstring error;
    ASSERT_TRUE(
        doc.LoadXML("<R a=\"x\"><Empty/><Text>abc</Text><Num> 42</Num><Neg>-7x</Neg></R>", error));
    auto root = Own(doc.GetDocumentElement());
    std::wstring value = L"keep";
    EXPECT_FALSE(root->GetAttributeValue(L"missing", value));
    EXPECT_EQ(value, L"keep");
    EXPECT_TRUE(root->GetAttributeValue(L"a", value));
    EXPECT_EQ(value, L"x");

    int number = 99;
    EXPECT_FALSE(Own(root->SelectSingleNode(L"Empty"))->GetNodeValueInInt(number));
    EXPECT_FALSE(Own(root->SelectSingleNode(L"Text"))->GetNodeValueInInt(number));
    EXPECT_EQ(number, 99);
    EXPECT_TRUE(Own(root->SelectSingleNode(L"Num"))->GetNodeValueInInt(number));
    EXPECT_EQ(number, 42);
    EXPECT_TRUE(Own(root->SelectSingleNode(L"Neg"))->GetNodeValueInInt(number));
    EXPECT_EQ(number, -7);
    EXPECT_EQ(root->SelectSingleNode(L"Absent"), nullptr);
    EXPECT_EQ(root->GetParentNode(), nullptr);
    EXPECT_EQ(Own(root->GetNodeList(L"Absent"))->GetSize(), 0);
}

TEST(ZebXml, DetachedNodesKeepAttributeOrderAndMoveIntoTheTree) {
    ZebXMLDocument doc;
    auto top = Own(doc.CreateDocumentElement(L"Settings"));
    auto rule = Own(doc.CreateNode(L"Rule"));
    EXPECT_EQ(rule->GetParentNode(), nullptr);
    for (const wchar_t* name : {L"Name", L"Status", L"LifeStatus", L"Summary", L"Module"})
        rule->AddAttribute(name, std::wstring(name) + L"-value");
    rule->AddAttribute(L"Status", L"0");  // replacing keeps the position
    rule->AddAttribute1("RuleModuleFileName", "r\xc3\xa9gles.so");
    auto param = Own(rule->AppendNode(L"Parameter"));
    param->SetNodeValue(L"<&> text");

    auto attrs = rule->GetAttributes();
    ASSERT_EQ(attrs.size(), 6u);
    EXPECT_EQ(attrs[1].first, L"Status");
    EXPECT_EQ(attrs[1].second, L"0");
    EXPECT_EQ(attrs[5].second, L"r\u00e9gles.so");

    // the detached element is not written until placed
    EXPECT_EQ(doc.GetXML().find("Rule"), std::string::npos);
    ASSERT_TRUE(top->AppendNode(rule.get()));
    auto parent = Own(rule->GetParentNode());
    ASSERT_NE(parent, nullptr);
    EXPECT_EQ(parent->GetName(), L"Settings");
    EXPECT_EQ(param->GetNodeValue(), L"<&> text");  // handles stay valid after the move
    EXPECT_FALSE(rule->AppendNode(top.get()));      // no element into its own subtree

    // deleting handles changes nothing
    const std::string before = doc.GetXML();
    delete rule->GetNodeList(L"Parameter");
    delete rule->SelectSingleNode(L"Parameter");
    EXPECT_EQ(doc.GetXML(), before);

    ZebXMLDocument reread;
    std::wstring error;
    ASSERT_TRUE(reread.LoadXML(before, error)) << error.size();
    auto list = Own(reread.GetElementsByTagName(L"Parameter"));
    ASSERT_EQ(list->GetSize(), 1);
    EXPECT_EQ(Own((*list)[0])->GetNodeValue(), L"<&> text");
    EXPECT_EQ((*list)[1], nullptr);
}

TEST(ZebXml, ElementsOfAnotherDocumentAreCopied) {
    ZebXMLDocument a, b;
    auto rootA = Own(a.CreateDocumentElement(L"A"));
    auto foreign = Own(b.CreateNode(L"Constraint"));
    foreign->AddAttribute(L"Name", L"c");
    ASSERT_TRUE(rootA->AppendNode(foreign.get()));
    EXPECT_NE(a.GetXML().find("<Constraint Name=\"c\""), std::string::npos);
}

TEST(ZebXml, ParseFailuresSayWhere) {
    ZebXMLDocument doc;
    std::wstring error;
    EXPECT_FALSE(doc.LoadXML("<a>\n  <b>\n</a>", error));
    EXPECT_NE(error.find(L"line 3"), std::wstring::npos) << std::string(error.begin(), error.end());
    EXPECT_EQ(doc.GetDocumentElement(), nullptr);

    const auto dir = std::filesystem::temp_directory_path() / "zeb_xml_test";
    std::filesystem::create_directories(dir);
    const auto empty = dir / "empty.xml";
    std::ofstream(empty).close();
    error.clear();
    EXPECT_FALSE(doc.LoadFile(empty.wstring(), error));
    EXPECT_FALSE(error.empty());
    error.clear();
    EXPECT_FALSE(doc.LoadFile((dir / "missing.xml").wstring(), error));
    EXPECT_NE(error.find(L"cannot open"), std::wstring::npos);

    // A file is parsed where it was read; the position of an error is still the file's own,
    // behind line ends, entities and text the parser had already rewritten.
    const auto broken = dir / "broken.xml";
    std::ofstream(broken, std::ios::binary)
        << "<a x=\"&amp;&lt;\">\r\n  <b>t&amp;t</b>\r\n  <c>\r\n</a>";
    error.clear();
    EXPECT_FALSE(doc.LoadFile(broken.wstring(), error));
    EXPECT_NE(error.find(L"line 4"), std::wstring::npos) << std::string(error.begin(), error.end());
    EXPECT_EQ(doc.GetDocumentElement(), nullptr);
}

// Text crosses between UTF-8 and wide text exactly: ASCII runs, names beyond ASCII after an ASCII
// start, characters beyond the basic plane, and broken sequences as U+FFFD.
TEST(ZebXml, TextConvertsExactlyBothWays) {
    for (const std::wstring& text :
         {std::wstring(L"M8X123-ISO4017"), std::wstring(L"Mutter DIN 934 \u2013 Stahl"),
          std::wstring(L"\u00c4u\u00dfere Scheibe"), std::wstring(L"gear \U0001F527 12"),
          std::wstring()})
        EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
    EXPECT_EQ(ToUtf8(L"Mutter DIN 934 \u2013 Stahl"), "Mutter DIN 934 \xe2\x80\x93 Stahl");
    EXPECT_EQ(FromUtf8("abc\xff"
                       "def"),
              L"abc\uFFFDdef");
    EXPECT_EQ(FromUtf8("abc\xe2\x80"), L"abc\uFFFD\uFFFD");

    // A document read from a file holds the same texts as one read from memory.
    const auto path = std::filesystem::temp_directory_path() / "zeb_xml_text.xml";
    const std::string xml = "<r><v A=\"Mutter DIN 934 \xe2\x80\x93 Stahl\" B=\"3.500000\"/></r>";
    std::ofstream(path, std::ios::binary) << xml;
    ZebXMLDocument fromFile, fromText;
    std::wstring error;
    ASSERT_TRUE(fromFile.LoadFile(path.wstring(), error));
    ASSERT_TRUE(fromText.LoadXML(xml, error));
    EXPECT_EQ(fromFile.GetXML(), fromText.GetXML());
    auto v = Own(Own(fromFile.GetDocumentElement())->SelectSingleNode(L"v"));
    std::wstring a;
    ASSERT_TRUE(v->GetAttributeValue(L"A", a));
    EXPECT_EQ(a, L"Mutter DIN 934 \u2013 Stahl");
    std::filesystem::remove(path);
}

// A document of several megabytes is written block after block on a thread of its own: the file
// holds exactly the document, and a write that fails partway (the file may not grow past 2 MB)
// leaves the old file as it was and nothing else behind.
TEST(ZebXml, ALargeDocumentIsSavedWholeOrNotAtAll) {
    const ScopedTempDir dir("zeb_xml_save_large");
    const auto target = dir.Path() / "settings.xml";
    ZebXMLDocument doc;
    auto top = Own(doc.CreateDocumentElement(L"Parameter"));
    ASSERT_TRUE(top->AppendElements1("Value", 80000, [](size_t i, ZebXMLElementText& text) {
        text.BeginElement();
        text.Attribute("Attribute1", L"M" + std::to_wstring(i) + L"-ISO4017 \u2013 Stahl");
        text.Attribute("Attribute2", L"3.500000");
        text.EndElement();
    }));
    const std::string whole = doc.GetXML();
    ASSERT_GT(whole.size(), 5u << 20);
    std::wstring error;
    ASSERT_TRUE(doc.SaveFile(target.wstring(), error)) << ToUtf8(error);
    EXPECT_EQ(FileBytes(target), whole);
    {
        // Without a thread for the writing, it is all written here, alike.
        const ZebRefusedThreads refused;
        std::filesystem::remove(target);
        ASSERT_TRUE(doc.SaveFile(target.wstring(), error)) << ToUtf8(error);
        EXPECT_EQ(FileBytes(target), whole);
    }

    delete doc.CreateDocumentElement(L"Replaced");
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{2u << 20, old.rlim_max};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    std::string bigger(3u << 20, 'x');
    auto replaced = Own(doc.GetDocumentElement());
    replaced->SetNodeValue(std::wstring(bigger.begin(), bigger.end()));
    const bool saved = doc.SaveFile(target.wstring(), error);
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, SIG_DFL);
    EXPECT_FALSE(saved);
    EXPECT_NE(error.find(L"cannot write"), std::wstring::npos) << ToUtf8(error);
    EXPECT_EQ(FileBytes(target), whole);
    size_t files = 0;
    for (auto& entry : std::filesystem::directory_iterator(dir.Path()))
        files += entry.is_regular_file();
    EXPECT_EQ(files, 1u);
}

TEST(ZebXml, SaveReplacesAWholeFileOrNothing) {
    const auto dir = std::filesystem::temp_directory_path() / "zeb_xml_save";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    const auto target = dir / "settings.xml";
    ZebXMLDocument doc;
    delete doc.CreateDocumentElement(L"VantorSettings");
    std::wstring error;
    ASSERT_TRUE(doc.SaveFile(target.wstring(), error));
    ZebXMLDocument back;
    ASSERT_TRUE(back.LoadFile(target.wstring(), error));
    EXPECT_EQ(Own(back.GetDocumentElement())->GetName(), L"VantorSettings");
    // a folder that does not exist: nothing written, a message
    EXPECT_FALSE(doc.SaveFile((dir / "no" / "such.xml").wstring(), error));
    EXPECT_FALSE(error.empty());
    size_t files = 0;
    for (auto& entry : std::filesystem::directory_iterator(dir)) files += entry.is_regular_file();
    EXPECT_EQ(files, 1u);

    // a settings file reached through a link (a company standard linked into a project, say):
    // the file it names gets the new document in its own folder, the link stays a link
    const auto standard = dir / "standard";
    std::filesystem::create_directory(standard);
    std::filesystem::rename(target, standard / "settings.xml");
    std::filesystem::create_symlink("standard/settings.xml", target);
    delete doc.CreateDocumentElement(L"Replaced");
    ASSERT_TRUE(doc.SaveFile(target.wstring(), error)) << error;
    EXPECT_TRUE(std::filesystem::is_symlink(target));
    ASSERT_TRUE(back.LoadFile((standard / "settings.xml").wstring(), error));
    EXPECT_EQ(Own(back.GetDocumentElement())->GetName(), L"Replaced");
    std::filesystem::remove_all(dir);
}

// Elements appended as parsed text must give the document that element-by-element building gives,
// whatever the values hold, in order across batches, and whether they are written on the calling
// thread (a short table, or where no thread can be had) or on a thread of their own (a long one).
TEST(ZebXml, AppendedElementsEqualElementsBuiltOneByOne) {
    const std::wstring values[] = {
        L"a&b<c>d\"e'f",
        L"tab\tnl\ncr\rx",
        L"ctl\x01\x1f"
        L"end",
        L" lead and trail ",
        L"",
        L"Mutter DIN 934 \u2013 Stahl \U0001F600",
        std::wstring(L"cut\0here", 8),
        L"&amp; stays text",
        // Not Unicode: written as U+FFFD, as every other conversion to UTF-8 writes it.
        std::wstring(L"x") + static_cast<wchar_t>(0x110000) + static_cast<wchar_t>(-5),
    };
    const char* const names[] = {"Attribute1", "Attribute2", "Attribute3"};
    for (const auto& [count, threads] :
         {std::pair{size_t{300}, true}, std::pair{size_t{30000}, true},
          std::pair{size_t{30000}, false}}) {
        SCOPED_TRACE(count);
        SCOPED_TRACE(threads);
        std::optional<ZebRefusedThreads> refused;
        if (!threads) refused.emplace();
        ZebXMLDocument built, appended;
        auto builtTop = Own(built.CreateDocumentElement(L"Parameter"));
        auto appendedTop = Own(appended.CreateDocumentElement(L"Parameter"));
        const auto valueOf = [&](size_t i, size_t a) -> const std::wstring& {
            return values[(i + a) % std::size(values)];
        };
        for (size_t i = 0; i < count; ++i) {
            if (i % 7 == 6) continue;  // an element written as nothing is not there
            auto value = Own(builtTop->AppendNode(L"Value"));
            for (size_t a = 0; a < 1 + i % 3; ++a)
                value->AddAttribute1(names[a], ToUtf8(valueOf(i, a)).c_str());
        }
        EXPECT_TRUE(
            appendedTop->AppendElements1("Value", count, [&](size_t i, ZebXMLElementText& text) {
                if (i % 7 == 6) return;
                text.BeginElement();
                for (size_t a = 0; a < 1 + i % 3; ++a) text.Attribute(names[a], valueOf(i, a));
                text.EndElement();
            }));
        Own(appendedTop->AppendNode(L"ResultCriteria"));  // after every appended element
        Own(builtTop->AppendNode(L"ResultCriteria"));
        EXPECT_EQ(appended.GetXML(), built.GetXML());

        auto list = Own(appendedTop->GetNodeList(L"Value"));
        ASSERT_EQ(static_cast<size_t>(list->GetSize()), count - count / 7);
        std::wstring text;
        EXPECT_TRUE(Own((*list)[1])->GetAttributeValue(L"Attribute1", text));
        EXPECT_EQ(text, values[1]);
        EXPECT_TRUE(Own((*list)[2])->GetAttributeValue(L"Attribute2", text));
        EXPECT_EQ(text, values[3]);
        EXPECT_TRUE(Own((*list)[5])->GetAttributeValue(L"Attribute2", text));
        EXPECT_EQ(text, L"cut");
        EXPECT_TRUE(
            Own((*list)[7])->GetAttributeValue(L"Attribute1", text));  // element 8: 6 is not there
        EXPECT_EQ(text, L"x\uFFFD\uFFFD");
    }
}

// A failure while writing elements on a thread of their own reaches the caller, after which the
// document is whole: whatever was appended before it, and nothing half.
TEST(ZebXml, AFailureWhileAppendingReachesTheCaller) {
    ZebXMLDocument doc;
    auto top = Own(doc.CreateDocumentElement(L"Parameter"));
    const auto appendFailingAt = [&](size_t failAt) {
        top->AppendElements1("Value", 50000, [&](size_t i, ZebXMLElementText& text) {
            if (i == failAt) throw std::runtime_error("no more");
            text.BeginElement();
            text.Attribute("Attribute1", L"row " + std::to_wstring(i));
            text.EndElement();
        });
    };
    EXPECT_THROW(appendFailingAt(20000), std::runtime_error);
    {
        // Here too where the elements are written on the calling thread.
        ZebXMLDocument other;
        auto otherTop = Own(other.CreateDocumentElement(L"Parameter"));
        const ZebRefusedThreads refused;
        EXPECT_THROW(otherTop->AppendElements1("Value", 50000,
                                               [&](size_t i, ZebXMLElementText& text) {
                                                   if (i == 20000) throw std::bad_alloc();
                                                   text.BeginElement();
                                                   text.EndElement();
                                               }),
                     std::bad_alloc);
        std::wstring error;
        ZebXMLDocument again;
        EXPECT_TRUE(again.LoadXML(other.GetXML(), error)) << ToUtf8(error);
    }
    auto list = Own(top->GetNodeList(L"Value"));
    EXPECT_LE(list->GetSize(), 20000);
    std::wstring text;
    for (long i = 0; i < list->GetSize(); i += 997) {
        ASSERT_TRUE(Own((*list)[i])->GetAttributeValue(L"Attribute1", text));
        EXPECT_EQ(text, L"row " + std::to_wstring(i));
    }
    std::wstring error;
    ZebXMLDocument again;
    EXPECT_TRUE(again.LoadXML(doc.GetXML(), error)) << ToUtf8(error);
}
