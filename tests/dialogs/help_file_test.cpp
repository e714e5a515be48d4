// The help file as it ships: beside each resource library, well-formed, self-contained, with a
// section for everything the product names and every dialog opens.
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "app/assembly_rules_app.h"
#include "app/help_topics.h"
#include "framework/resource_library.h"
#include "resources/resource_file.h"
#include "tests/ui/qt_test_app.h"

namespace {
// What the checks of a shipped help file need from it, read as XML.
struct HelpPage {
    QString error;                        // empty when the file is well-formed
    QString lang;                         // of the html element
    std::vector<QString> ids;             // every id, in document order
    std::vector<QString> contentsLinks;   // the links of the table of contents (nav)
    std::vector<QString> references;      // every href and src
    std::map<QString, QString> headings;  // section id -> the text of its first heading
    int scripts = 0;
    QString text;  // the text outside the style sheet, blanks simplified
};

HelpPage ReadHelpPage(const QString& path) {
    HelpPage page;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        page.error = "cannot be opened";
        return page;
    }
    QXmlStreamReader xml(&file);
    QStringList open;
    QStringList sections;  // ids of the open sections
    QString heading;       // text of the heading being read
    const QRegularExpression headingName("^h[1-6]$");
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
            case QXmlStreamReader::StartElement: {
                const QString name = xml.name().toString();
                const QXmlStreamAttributes attributes = xml.attributes();
                open << name;
                if (name == "html") page.lang = attributes.value("lang").toString();
                if (name == "script") ++page.scripts;
                if (attributes.hasAttribute("id"))
                    page.ids.push_back(attributes.value("id").toString());
                for (const char* reference : {"href", "src"})
                    if (attributes.hasAttribute(reference))
                        page.references.push_back(attributes.value(reference).toString());
                if (name == "a" && open.contains("nav"))
                    page.contentsLinks.push_back(attributes.value("href").toString());
                if (name == "section") sections << attributes.value("id").toString();
                if (headingName.match(name).hasMatch()) heading.clear();
                break;
            }
            case QXmlStreamReader::EndElement: {
                const QString name = open.takeLast();
                if (name == "section") sections.removeLast();
                if (headingName.match(name).hasMatch() && !sections.isEmpty())
                    page.headings.try_emplace(sections.last(), heading.simplified());
                break;
            }
            case QXmlStreamReader::Characters:
                if (!open.contains("style")) page.text += xml.text().toString() + QLatin1Char(' ');
                heading += xml.text().toString();
                break;
            default:
                break;
        }
    }
    if (xml.hasError())
        page.error = QString("%1 at line %2").arg(xml.errorString()).arg(xml.lineNumber());
    page.text = page.text.simplified();
    return page;
}

// The sections every help file has, besides those of the dialogs.
const char* const kHelpSections[] = {"overview",
                                     "rules",
                                     "rule-fastener-clearance",
                                     "rule-fastener-engagement-length",
                                     "rule-recommended-thread-types",
                                     "rule-fastener-alignment",
                                     "rule-fastener-accessibility",
                                     "rule-bolt-screw-rationalization",
                                     "rule-interference-detection",
                                     "rule-minimum-clearance",
                                     "rule-hole-alignment",
                                     "rule-slot-alignment",
                                     "rule-contact-material",
                                     "rule-preferred-components",
                                     "configuring",
                                     "severity",
                                     "units",
                                     "ok-cancel",
                                     "tables",
                                     "import",
                                     "import-rows",
                                     "import-log",
                                     "import-problems",
                                     "databases",
                                     "database-file",
                                     "fastener-names",
                                     "thread-sizes",
                                     "materials",
                                     "ignore-list",
                                     "rule-sets",
                                     "dialogs",
                                     "hardware-database-dialog"};

// Each rule's section is headed by the rule's name as the product shows it.
const std::pair<const char*, ZebStringId> kRuleSections[] = {
    {"rule-fastener-clearance", IDS_RULE_FASTENER_CLEARANCE},
    {"rule-fastener-engagement-length", IDS_RULE_FASTENER_ENGAGEMENT_LENGTH},
    {"rule-recommended-thread-types", IDS_RULE_RECOMM_THREAD_TYPES},
    {"rule-fastener-alignment", IDS_RULE_FASTENER_ALIGNMENT},
    {"rule-fastener-accessibility", IDS_RULE_FASTENER_ACCESSIBILITY},
    {"rule-bolt-screw-rationalization", IDS_RULE_BOLT_SCREW_RATIONALIZATION},
    {"rule-interference-detection", IDS_RULE_INTERFERENCE_DETECTION},
    {"rule-minimum-clearance", IDS_RULE_MIN_CLEARANCE},
    {"rule-hole-alignment", IDS_RULE_HOLE_ALIGNMENT},
    {"rule-slot-alignment", IDS_RULE_SLOT_ALIGNMENT},
    {"rule-contact-material", IDS_RULE_CONTACT_MATERIAL},
    {"rule-preferred-components", IDS_RULE_PREFERRED_COMPONENTS}};

// Further texts every help file uses as the product shows them.
const ZebStringId kNamedTexts[] = {IDS_MODULE_NAME,       IDS_SEVERITY_CRITICAL, IDS_SEVERITY_MAJOR,
                                   IDS_SEVERITY_MODERATE, IDS_SEVERITY_MINOR,    IDS_SEVERITY_INFO};
}  // namespace

TEST(HelpFile, ShipsBesideEachResourceLibraryWithEverySectionTheProductNames) {
    EnsureQtTestApp();
    // The application object names the help file of the build tree, and it is there.
    ASSERT_NE(GetAssemblyRulesApp(), nullptr);
    EXPECT_TRUE(QFileInfo(QString::fromStdWString(GetAssemblyRulesApp()->m_helpFilePath)).isFile())
        << QString::fromStdWString(GetAssemblyRulesApp()->m_helpFilePath).toStdString();

    // The help file's own sections, and the section of every dialog.
    std::set<QString> required(std::begin(kHelpSections), std::end(kHelpSections));
    for (const wchar_t* topic : kDialogHelpTopics) required.insert(QString::fromWCharArray(topic));
    const QRegularExpression anchor("^[A-Za-z][A-Za-z0-9_-]*$");

    std::vector<std::string> englishIds;
    for (const QString lang : {"en", "de"}) {
        SCOPED_TRACE(lang.toStdString());
        const QString folder = QString(VANTOR_BUILD_DIR) + "/share/vantor/res/" + lang;
        const QString library = folder + "/" + QString::fromStdWString(kZebResourceFileName);
        ASSERT_TRUE(QFileInfo(library).isFile()) << library.toStdString();
        const HelpPage page = ReadHelpPage(
            folder + "/" + QString::fromStdWString(CZEBAssemblyRulesApp::kHelpFileName));
        ASSERT_TRUE(page.error.isEmpty()) << page.error.toStdString();
        EXPECT_EQ(page.lang.toStdString(), lang.toStdString());
        EXPECT_EQ(page.scripts, 0);

        std::vector<QString> sorted = page.ids;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end())
            << "an id is used twice";
        const std::set<QString> ids(sorted.begin(), sorted.end());
        for (const QString& topic : required) {
            EXPECT_TRUE(anchor.match(topic).hasMatch())
                << "not an anchor id: " << topic.toStdString();
            EXPECT_TRUE(ids.count(topic)) << "no section " << topic.toStdString();
        }

        // Every link is a section of the same file; every other source a picture that ships
        // beside it.
        for (const QString& reference : page.references) {
            const bool section = reference.startsWith('#') && ids.count(reference.mid(1));
            const bool picture =
                reference.startsWith("../images/") && QFileInfo(folder + "/" + reference).isFile();
            EXPECT_TRUE(section || picture) << "link " << reference.toStdString();
        }
        // The table of contents leads to every section that the product names.
        const std::set<QString> contents(page.contentsLinks.begin(), page.contentsLinks.end());
        for (const QString& topic : required)
            EXPECT_TRUE(contents.count("#" + topic))
                << "not in the contents: " << topic.toStdString();

        // Rule, module and severity names as the product shows them in this language.
        const std::unique_ptr<CZebResourceLibrary> strings(
            CZebResourceLibrary::Load(library.toStdWString()));
        ASSERT_NE(strings, nullptr);
        for (const auto& [section, id] : kRuleSections) {
            const auto heading = page.headings.find(section);
            ASSERT_NE(heading, page.headings.end()) << section;
            EXPECT_EQ(heading->second.toStdString(),
                      QString::fromStdWString(strings->LoadString(id)).toStdString());
        }
        for (ZebStringId id : kNamedTexts) {
            const QString name = QString::fromStdWString(strings->LoadString(id));
            ASSERT_FALSE(name.isEmpty());
            EXPECT_TRUE(page.text.contains(name)) << "does not name " << name.toStdString();
        }

        // Both languages have the same sections.
        std::vector<std::string> idTexts;
        for (const QString& id : sorted) idTexts.push_back(id.toStdString());
        if (lang == "en")
            englishIds = idTexts;
        else
            EXPECT_EQ(idTexts, englishIds);
    }
}
