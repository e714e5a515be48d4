// lint and diff run as a reviewer would run them on settings files kept under version control.
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/file_bytes.h"
#include "tests/support/host_run.h"

namespace fs = std::filesystem;

namespace {
// The line on which `needle` starts; the needle must be in the text once.
long LineOf(const std::string& text, const std::string& needle) {
    const size_t at = text.find(needle);
    EXPECT_NE(at, std::string::npos) << needle;
    EXPECT_EQ(text.find(needle, at + 1), std::string::npos) << "not unique: " << needle;
    return 1 +
           static_cast<long>(std::count(text.begin(), text.begin() + static_cast<long>(at), '\n'));
}

// Replaces the one occurrence of `from`.
void Replace(std::string& text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    ASSERT_EQ(text.find(from, at + 1), std::string::npos) << "not unique: " << from;
    text.replace(at, from.size(), to);
}

// The element of the "Parameter" of type `type`, from its start tag to its end tag.
std::string ParameterElement(const std::string& text, const std::string& type) {
    const size_t start = text.rfind("<Parameter", text.find("Type=\"" + type + "\""));
    const size_t end = text.find("</Parameter>", start) + std::string("</Parameter>").size();
    return text.substr(start, end - start);
}

std::string RuleElement(const std::string& text, const std::string& name) {
    const size_t start = text.find("<Rule Name=\"" + name + "\"");
    const size_t end = text.find("</Rule>", start) + std::string("</Rule>").size();
    return text.substr(start, end - start);
}

class LintDiffTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("vantor-lint-" +
               std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }

    HostRun Host(const std::string& args) { return RunHost(args, dir / "stderr.txt"); }

    std::string P(const std::string& name) const { return (dir / name).string(); }
    void Write(const std::string& name, const std::string& text) {
        std::ofstream(dir / name, std::ios::binary) << text;
    }

    // A document with every rule at its defaults, as `new` writes it.
    std::string Fresh(const std::string& name, const std::string& options = "") {
        const HostRun made = Host("new -o " + P(name) + " " + options);
        EXPECT_EQ(made.status, 0) << made.err;
        return FileBytes(dir / name);
    }

    fs::path dir;
};

struct Expected {
    std::string rule;  // empty: the finding names no rule
    std::string parameter;
    long line;
    std::string words;  // part of the message
};
}  // namespace

TEST_F(LintDiffTest, LintReportsEachSilentChangeOnceWithItsLine) {
    std::string text = Fresh("clean.xml");
    const HostRun clean = Host("lint " + P("clean.xml"));
    EXPECT_EQ(clean.status, 0) << clean.out << clean.err;
    EXPECT_EQ(clean.out, "");
    Fresh("inch.xml", "--unit 3");
    EXPECT_EQ(Host("lint " + P("inch.xml")).status, 0);

    // A unit the converter does not know, and a version older than the slot alignment switches.
    Replace(text, "<AssemblyRules Version=\"v3.5\" Unit=\"0\">",
            "<AssemblyRules Version=\"v3.4\" Unit=\"42\">");
    // A rule of another module, and a second copy of a rule.
    const std::string preferred = RuleElement(text, "Preferred Components");
    Replace(text, "</AssemblyRules>",
            "  <Rule Name=\"Gear Mesh\" Status=\"0\" LifeStatus=\"0\" Severity=\"1\" />\n    " +
                preferred + "\n  </AssemblyRules>");
    // A parameter the rule does not have, and one given twice.
    const std::string tolerance = ParameterElement(text, "9084");
    Replace(text, tolerance,
            tolerance +
                "\n      <Parameter Name=\"\" Type=\"9999\" "
                "Status=\"1\"><Operator>3</Operator></Parameter>");
    const std::string switched = ParameterElement(text, "6093");
    Replace(text, switched, switched + "\n      " + switched);
    // A decimal comma, which the stream reads as far as the comma.
    const std::string toolClearance = ParameterElement(text, "6080");
    std::string commaClearance = toolClearance;
    Replace(commaClearance, "<Value>1.200000</Value>", "<Value>1,2</Value>");
    Replace(text, toolClearance, commaClearance);
    // A table row of six cells.
    const std::string lengths = ParameterElement(text, "2053");
    std::string sixCells = lengths;
    Replace(sixCells, "<ParameterType>24</ParameterType>",
            "<ParameterType>24</ParameterType>\n        <Value Attribute1=\"M8\" Attribute2=\"12\" "
            "Attribute3=\"a\" "
            "Attribute4=\"b\" Attribute5=\"c\" Attribute6=\"d\" />");
    Replace(text, lengths, sixCells);
    // RANGE over a single value, an operator without a code, a parameter without operator.
    const std::string wrench = ParameterElement(text, "6092");
    std::string range = wrench;
    Replace(range, "<Operator>7</Operator>", "<Operator>1</Operator>");
    Replace(text, wrench, range);
    const std::string general = ParameterElement(text, "2063");
    std::string unknownOperator = general;
    Replace(unknownOperator, "<Operator>7</Operator>", "<Operator>4</Operator>");
    Replace(text, general, unknownOperator);
    const std::string offset = ParameterElement(text, "8019");
    std::string noOperator = offset;
    Replace(noOperator, "<Operator>3</Operator>", "");
    Replace(text, offset, noOperator);
    Write("seeded.xml", text);

    const std::vector<Expected> expected = {
        {"", "", LineOf(text, "<AssemblyRules"), "\"42\" is no unit code"},
        {"Slot Alignment", "", LineOf(text, "<AssemblyRules"),
         "\"v3.4\" counts as older than v3.5"},
        {"Gear Mesh", "", LineOf(text, "<Rule Name=\"Gear Mesh\""), "no rule of the module"},
        {"Preferred Components", "", LineOf(text, preferred + "\n  </AssemblyRules>"),
         "appears again (first on line"},
        {"Hole Alignment", "9999", LineOf(text, "Type=\"9999\""), "no parameter 9999"},
        {"Fastener Accessibility", "6093",
         LineOf(text, switched + "\n      " + switched) + static_cast<long>(Lines(switched).size()),
         "only the first is read"},
        {"Fastener Accessibility", "6080", LineOf(text, "<Value>1,2</Value>"),
         "\"1,2\" is not a number: read as 1.000000"},
        {"Fastener Engagement Length", "2053", LineOf(text, "Attribute6=\"d\""),
         "Attribute6 is dropped"},
        {"Fastener Accessibility", "6092", LineOf(text, "Type=\"6092\""), "RANGE with 1 value ("},
        {"Minimum Clearance Between Parts", "2063", LineOf(text, "<Operator>4</Operator>"),
         "operator 4 is none of"},
        {"Fastener Alignment", "8019", LineOf(text, "Type=\"8019\""), "no \"Operator\""},
    };

    const HostRun seeded = Host("lint " + P("seeded.xml"));
    EXPECT_EQ(seeded.status, 1) << seeded.err;
    const std::vector<std::string> lines = Lines(seeded.out);
    EXPECT_EQ(lines.size(), expected.size()) << seeded.out;
    for (const Expected& e : expected) {
        std::string head = P("seeded.xml") + ":" + std::to_string(e.line) + ": ";
        if (!e.rule.empty()) head += "rule \"" + e.rule + "\"" + (e.parameter.empty() ? ": " : " ");
        if (!e.parameter.empty()) head += "parameter " + e.parameter + ": ";
        const int matches = static_cast<int>(
            std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
                return line.rfind(head, 0) == 0 && line.find(e.words) != std::string::npos;
            }));
        EXPECT_EQ(matches, 1) << head << "..." << e.words << "\n" << seeded.out;
    }

    // The same findings for scripts.
    const HostRun json = Host("lint --format json " + P("seeded.xml"));
    EXPECT_EQ(json.status, 1);
    QJsonParseError error;
    const QJsonDocument parsed =
        QJsonDocument::fromJson(QByteArray::fromStdString(json.out), &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << "\n"
                                                     << json.out;
    ASSERT_TRUE(parsed.isArray());
    const QJsonArray findings = parsed.array();
    ASSERT_EQ(static_cast<size_t>(findings.size()), expected.size()) << json.out;
    for (const Expected& e : expected) {
        int matches = 0;
        for (const QJsonValue& value : findings) {
            const QJsonObject f = value.toObject();
            const bool rule =
                e.rule.empty() ? f["rule"].isNull() : f["rule"].toString().toStdString() == e.rule;
            const bool parameter = e.parameter.empty()
                                       ? f["parameter"].isNull()
                                       : f["parameter"].toString().toStdString() == e.parameter;
            if (rule && parameter && f["line"].toInt() == e.line &&
                f["message"].toString().toStdString().find(e.words) != std::string::npos)
                ++matches;
        }
        EXPECT_EQ(matches, 1) << e.rule << " " << e.parameter << " " << e.words;
    }
    // Quotes, backslashes and control characters in names come out escaped.
    Write("quoted.xml",
          "<VantorSettings><AssemblyRules Version=\"v3.5\" Unit=\"0\">\n"
          "<Rule Name=\"a &quot;b&quot; \\ c&#9;d\" /></AssemblyRules></VantorSettings>");
    const HostRun quoted = Host("lint --format json " + P("quoted.xml"));
    EXPECT_EQ(quoted.status, 1);
    const QJsonDocument quotedJson =
        QJsonDocument::fromJson(QByteArray::fromStdString(quoted.out), &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError) << quoted.out;
    ASSERT_EQ(quotedJson.array().size(), 1);
    EXPECT_EQ(quotedJson.array()[0].toObject()["rule"].toString().toStdString(), "a \"b\" \\ c\td");
    EXPECT_EQ(quotedJson.array()[0].toObject()["line"].toInt(), 2);
}

// Each finding is what the module really does: a resave changes exactly the flagged places.
TEST_F(LintDiffTest, LintFindingsAgreeWithTheModule) {
    std::string text = Fresh("base.xml");
    // Values the module reads otherwise than they are written, and a RANGE it keeps.
    Replace(text, "<Value>1.200000</Value>", "<Value>0.1234567</Value>");
    const std::string wrench = ParameterElement(text, "6092");
    std::string range = wrench;
    Replace(range, "<Operator>7</Operator>", "<Operator>1</Operator>");
    Replace(range, "<Value>2.500000</Value>", "<Value>2.5</Value><Value>3.5</Value>");
    Replace(text, wrench, range);
    const std::string clearance = ParameterElement(text, "2052");
    std::string oldLayout = clearance;
    Replace(oldLayout, "<Operator>7</Operator>", "<Operator>3</Operator>");
    Replace(oldLayout, "<ParameterType>24</ParameterType>",
            "<ParameterType>24</ParameterType><Value Attribute1=\"M8\" Attribute2=\"1\" "
            "Attribute3=\"2\" />");
    Replace(text, clearance, oldLayout);
    Replace(text, ParameterElement(text, "6069"), "");
    const std::string narrowGaps = ParameterElement(text, "6072");
    std::string worded = narrowGaps;
    Replace(worded, "<Value>0</Value>", "<Value>false</Value>");
    Replace(text, narrowGaps, worded);
    Replace(text, "<Rule Name=\"Contact Material\" Status=\"0\"",
            "<Rule Name=\"Contact Material\" Status=\"no\"");
    Write("odd.xml", text);

    const HostRun lint = Host("lint " + P("odd.xml"));
    EXPECT_EQ(lint.status, 1);
    const std::string out = lint.out;
    EXPECT_NE(out.find("parameter 6080: value \"0.1234567\" has more than six decimals: written "
                       "back as 0.123457"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("parameter 2052: operator \"3\" is read as 7 (>=)"), std::string::npos)
        << out;
    // Reading drops the default of 6069 before it looks for the file's value.
    EXPECT_NE(
        out.find("parameter 6069: no \"Parameter\" of type 6069: after reading it holds none"),
        std::string::npos)
        << out;
    EXPECT_NE(out.find("rule \"Contact Material\": \"Status\" \"no\" is read as -1"),
              std::string::npos)
        << out;
    EXPECT_EQ(out.find("parameter 6092"), std::string::npos) << out;
    // The old clearance layout moves the third cell to a row of 9450.
    EXPECT_NE(
        out.find("parameter 2052: reading changes the values: [M8 | 1 | 2] become [M8 | 1 | ]"),
        std::string::npos)
        << out;
    EXPECT_NE(out.find("parameter 9450: reading changes the values: none become [M8 | 2 | ]"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("parameter 6072: value \"false\" is read as 1 (true)"), std::string::npos)
        << out;
    EXPECT_EQ(Lines(out).size(), 7u) << out;

    // A resave makes these changes, after which there is nothing left to report.
    ASSERT_EQ(Host("resave " + P("odd.xml") + " -o " + P("saved.xml")).status, 0);
    const std::string saved = FileBytes(dir / "saved.xml");
    EXPECT_NE(saved.find("<Value>0.123457</Value>"), std::string::npos);
    EXPECT_NE(saved.find("<Value Attribute1=\"M8\" Attribute2=\"2\" Attribute3=\"\" />"),
              std::string::npos)
        << saved;
    EXPECT_NE(ParameterElement(saved, "6072").find("<Value>1</Value>"), std::string::npos) << saved;
    const HostRun again = Host("lint " + P("saved.xml"));
    EXPECT_EQ(again.status, 0) << again.out;
}

TEST_F(LintDiffTest, UnreadableFilesExitTwo) {
    Write("broken.xml", "<VantorSettings>\n  <AssemblyRules>\n</VantorSettings>\n");
    for (const std::string& command :
         {"lint " + P("broken.xml"), "lint --format json " + P("missing.xml"),
          "diff " + P("broken.xml") + " " + P("broken.xml"),
          "lint --format yaml " + P("broken.xml"), "diff " + P("broken.xml")}) {
        const HostRun run = Host(command);
        EXPECT_EQ(run.status, 2) << command;
        EXPECT_EQ(run.out, "") << command;
        EXPECT_FALSE(run.err.empty()) << command;
    }
    Fresh("good.xml");
    const HostRun oneBad = Host("diff " + P("good.xml") + " " + P("broken.xml"));
    EXPECT_EQ(oneBad.status, 2);
    EXPECT_NE(oneBad.err.find("broken.xml: line 3, column"), std::string::npos) << oneBad.err;
}

TEST_F(LintDiffTest, DiffIgnoresAChangeOfUnitAndShowsEachChangeOnce) {
    const std::string text = Fresh("old.xml");
    ASSERT_EQ(Host("convert " + P("old.xml") + " --unit 3 -o " + P("inch.xml")).status, 0);
    ASSERT_NE(FileBytes(dir / "inch.xml"), text);
    for (const auto& [a, b] : {std::pair{"old.xml", "inch.xml"}, std::pair{"inch.xml", "old.xml"},
                               std::pair{"old.xml", "old.xml"}}) {
        const HostRun same = Host(std::string("diff ") + P(a) + " " + P(b));
        EXPECT_EQ(same.status, 0) << a << " " << b << "\n" << same.out << same.err;
        EXPECT_EQ(same.out, "");
    }

    std::string changed = text;
    Replace(changed, "<Value>1.200000</Value>", "<Value>1.500000</Value>");
    const std::string lengths = ParameterElement(changed, "2053");
    std::string row = lengths;
    Replace(
        row, "<ParameterType>24</ParameterType>",
        "<ParameterType>24</ParameterType>\n        <Value Attribute1=\"M8\" Attribute2=\"12\" />");
    Replace(changed, lengths, row);
    Replace(changed, RuleElement(changed, "Contact Material"), "");
    Write("new.xml", changed);
    const HostRun diff = Host("diff " + P("old.xml") + " " + P("new.xml"));
    EXPECT_EQ(diff.status, 1) << diff.err;
    const std::vector<std::string> expected = {
        "rule \"Fastener Engagement Length\" parameter 2053: + row [M8 | 12]",
        "rule \"Fastener Accessibility\" parameter 6080: values 1.200000 -> 1.500000",
        "- rule \"Contact Material\"",
    };
    EXPECT_EQ(Lines(diff.out), expected) << diff.out;

    // In another unit the same three changes follow the unit, in the old document's unit.
    ASSERT_EQ(Host("convert " + P("new.xml") + " --unit 3 -o " + P("new-inch.xml")).status, 0);
    const HostRun inch = Host("diff " + P("old.xml") + " " + P("new-inch.xml"));
    EXPECT_EQ(inch.status, 1);
    const std::vector<std::string> inchLines = Lines(inch.out);
    ASSERT_EQ(inchLines.size(), 4u) << inch.out;
    EXPECT_EQ(inchLines[0], "unit: 0 (millimetre) -> 3 (inch)");
    EXPECT_EQ(inchLines[2],
              "rule \"Fastener Accessibility\" parameter 6080: values 1.200000 -> 1.500000");

    // Severity, operator, status and a changed row; rows are matched by their first cell.
    std::string edited = changed;
    Replace(edited, "<Value Attribute1=\"M8\" Attribute2=\"12\" />",
            "<Value Attribute1=\"M8\" Attribute2=\"14\" />");
    Replace(edited, "<Rule Name=\"Fastener Alignment\" Status=\"0\" LifeStatus=\"0\"",
            "<Rule Name=\"Fastener Alignment\" Status=\"1\" LifeStatus=\"0\"");
    const std::string wrench = ParameterElement(edited, "6092");
    std::string wrenchEdited = wrench;
    Replace(wrenchEdited, "<Operator>7</Operator>", "<Operator>8</Operator>");
    Replace(wrenchEdited, "Status=\"1\"", "Status=\"0\"");
    Replace(edited, wrench, wrenchEdited);
    Write("edited.xml", edited);
    const HostRun edits = Host("diff " + P("new.xml") + " " + P("edited.xml"));
    EXPECT_EQ(edits.status, 1);
    const std::vector<std::string> editLines = {
        "rule \"Fastener Engagement Length\" parameter 2053: row \"M8\" [M8 | 12] -> [M8 | 14]",
        "rule \"Fastener Accessibility\" parameter 6092: operator >= -> <=",
        "rule \"Fastener Accessibility\" parameter 6092: status enabled -> disabled",
        "rule \"Fastener Alignment\": status 0 -> 1",
    };
    EXPECT_EQ(Lines(edits.out), editLines) << edits.out;
}
