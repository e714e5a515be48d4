#include "framework/ui/rule_dlg_base.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QVBoxLayout>
#include <QXmlStreamReader>
#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "app/assembly_rules_app.h"
#include "framework/resource_library.h"
#include "framework/ui/hot_key.h"
#include "framework/ui/picture_control.h"
#include "framework/ui/recording_ui_service.h"
#include "framework/ui/ui_service.h"
#include "resources/resource_file.h"
#include "tests/ui/qt_test_app.h"

namespace {
// Records which widgets key presses were offered at, and consumes F2.
class RecordingDlg : public CZEBRuleDlgBase {
public:
    explicit RecordingDlg(const std::wstring& helpFile = L"/opt/vantor/vantor.html")
        : CZEBRuleDlgBase(9081, 13050, helpFile, nullptr) {
        new QVBoxLayout(Body());
    }
    bool OnInitDialog() override {
        ++inits;
        return CZEBRuleDlgBase::OnInitDialog();
    }
    bool PreTranslateMessage(QObject* target, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        keyTargets.push_back(target);
        return static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2;
    }
    int inits = 0;
    std::vector<QObject*> keyTargets;
};

// Writes a small help file at `path`, making its folders.
bool WriteHelpFile(const QString& path) {
    if (!QDir().mkpath(QFileInfo(path).path())) return false;
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write("<html><body></body></html>") > 0;
}

void ClickHelp(CZEBRuleDlgBase& dlg) {
    QTest::mouseClick(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdHelp), Qt::LeftButton);
}

// What the checks of a shipped help file need from it, read as XML.
struct HelpPage {
    QString error;                       // empty when the file is well-formed
    QString lang;                        // of the html element
    std::vector<QString> ids;            // every id, in document order
    std::vector<QString> contentsLinks;  // the links of the table of contents (nav)
    std::vector<QString> references;     // every href and src
    std::map<QString, QString> headings; // section id -> the text of its first heading
    int scripts = 0;
    QString text;                        // the text outside the style sheet, blanks simplified
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
            if (attributes.hasAttribute("id")) page.ids.push_back(attributes.value("id").toString());
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

// The topics named by SetHelpTopic calls with a literal in `source`.
std::set<QString> TopicsIn(const QString& source) {
    static const QRegularExpression call(R"re(SetHelpTopic\(\s*L"([^"]*)"\s*\))re");
    std::set<QString> topics;
    for (auto match = call.globalMatch(source); match.hasNext();) topics.insert(match.next().captured(1));
    return topics;
}

// Every topic a dialog of the product names, from the sources outside the tests and build trees.
std::set<QString> TopicsNamedInSources() {
    const QDir root(VANTOR_SOURCE_DIR);
    std::set<QString> topics;
    for (const QString& top : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (top.startsWith("build") || top.startsWith('.') || top == "tests") continue;
        QDirIterator files(root.filePath(top), {"*.cpp", "*.h"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QIODevice::ReadOnly)) continue;
            topics.merge(TopicsIn(QString::fromUtf8(file.readAll())));
        }
    }
    return topics;
}

// The sections every help file has, besides those the dialogs name.
const char* const kHelpSections[] = {
    "overview", "rules", "rule-fastener-clearance", "rule-fastener-engagement-length",
    "rule-recommended-thread-types", "rule-fastener-alignment", "rule-fastener-accessibility",
    "rule-bolt-screw-rationalization", "rule-interference-detection", "rule-minimum-clearance",
    "rule-hole-alignment", "rule-slot-alignment", "rule-contact-material",
    "rule-preferred-components", "configuring", "severity", "units", "ok-cancel", "tables",
    "import", "import-rows", "import-log", "import-problems", "databases", "database-file",
    "fastener-names", "thread-sizes", "materials", "ignore-list", "rule-sets", "dialogs",
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
const ZebStringId kNamedTexts[] = {IDS_MODULE_NAME, IDS_SEVERITY_CRITICAL, IDS_SEVERITY_MAJOR,
                                   IDS_SEVERITY_MODERATE, IDS_SEVERITY_MINOR, IDS_SEVERITY_INFO};
}  // namespace

TEST(RuleDlgBase, ControlsAreFoundByIdAndLaterChildrenArePreTranslatedOnce) {
    EnsureQtTestApp();
    CZebResourceScope scope;
    RecordingDlg dlg;
    EXPECT_EQ(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdOk)->text(), "OK");
    EXPECT_NE(dlg.GetDlgItem(CZEBRuleDlgBase::kIdCancel), nullptr);
    EXPECT_NE(dlg.GetDlgItem(CZEBRuleDlgBase::kIdHelp), nullptr);
    EXPECT_EQ(dlg.GetDlgItem(6066), nullptr);

    // A control added after construction, inside a container added after construction.
    auto* box = new QWidget(dlg.Body());
    dlg.Body()->layout()->addWidget(box);
    auto* edit = new QLineEdit(box);
    SetZebControlId(edit, 6066);
    EXPECT_EQ(dlg.GetDlgItem(6066), edit);

    ShowActive(&dlg);
    EXPECT_EQ(dlg.inits, 1);
    EXPECT_FALSE(dlg.GetPictureControl()->pixmap().isNull());

    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_A);
    EXPECT_EQ(edit->text(), "a");
    // Offered at the line edit only, not again on its way up to the dialog.
    EXPECT_EQ(dlg.keyTargets, std::vector<QObject*>{edit});
    QTest::keyClick(edit, Qt::Key_F2);
    EXPECT_EQ(dlg.keyTargets.size(), 2u);
    dlg.hide();
    dlg.show();
    EXPECT_EQ(dlg.inits, 1);
}

TEST(RuleDlgBase, OkAndCancel) {
    EnsureQtTestApp();
    CZebRecordingUiService ui;
    RecordingDlg dlg;
    ShowActive(&dlg);
    QTest::mouseClick(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdOk), Qt::LeftButton);
    EXPECT_EQ(dlg.result(), 1);
    EXPECT_FALSE(dlg.isVisible());

    ShowActive(&dlg);
    QTest::mouseClick(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdCancel), Qt::LeftButton);
    EXPECT_EQ(dlg.result(), 2);
    ShowActive(&dlg);
    QTest::keyClick(&dlg, Qt::Key_Escape);
    EXPECT_EQ(dlg.result(), 2);
}

TEST(RuleDlgBase, ImportHotKeyWorksOnlyWhileRegistered) {
    EnsureQtTestApp();
    RecordingDlg dlg;
    CZebHotKey hotKey(&dlg);
    QSignalSpy pressed(&hotKey, &CZebHotKey::Pressed);
    ShowActive(&dlg);
    QTest::keyClick(&dlg, Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(pressed.count(), 0);
    hotKey.Register();
    QTest::keyClick(&dlg, Qt::Key_I, Qt::ControlModifier);
    ASSERT_EQ(pressed.count(), 1);
    EXPECT_EQ(pressed[0][0].toInt(), 1);
    hotKey.Unregister();
    QTest::keyClick(&dlg, Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(pressed.count(), 1);
}

TEST(RuleDlgBase, HelpOpensTheHelpFileAtTheDialogsSection) {
    EnsureQtTestApp();
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    // A folder name with a blank and a '#', which a URL must not take literally.
    const QString file = root.filePath("Vantor Hilfe #2/res/vantor.html");
    ASSERT_TRUE(WriteHelpFile(file));
    CZebRecordingUiService ui;
    RecordingDlg dlg(file.toStdWString());
    EXPECT_EQ(dlg.GetHelpTopic(), L"");
    dlg.SetHelpTopic(L"fastener-clearance");
    EXPECT_EQ(dlg.GetHelpTopic(), L"fastener-clearance");
    ShowActive(&dlg);

    ClickHelp(dlg);
    ASSERT_EQ(ui.opened.size(), 1u);
    const QString opened = QString::fromStdWString(ui.opened[0]);
    EXPECT_TRUE(opened.startsWith("file:///")) << opened.toStdString();
    EXPECT_TRUE(opened.endsWith("/Vantor%20Hilfe%20%232/res/vantor.html#fastener-clearance"))
        << opened.toStdString();
    const QUrl url(opened);
    EXPECT_EQ(url.toLocalFile().toStdString(), file.toStdString());
    EXPECT_EQ(url.fragment().toStdString(), "fastener-clearance");
    EXPECT_TRUE(ui.messages.empty());

    // Without a topic the file opens at its start: no fragment at all.
    dlg.SetHelpTopic(L"");
    ClickHelp(dlg);
    ASSERT_EQ(ui.opened.size(), 2u);
    const QUrl start(QString::fromStdWString(ui.opened[1]));
    EXPECT_FALSE(start.hasFragment());
    EXPECT_EQ(start.toLocalFile().toStdString(), file.toStdString());
    EXPECT_EQ(ui.opened[1].find(L'#'), std::wstring::npos);

    // The desktop could not open it: said, not swallowed.
    ui.AnswerShellOpen(false);
    ClickHelp(dlg);
    EXPECT_EQ(ui.opened.size(), 3u);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_NE(ui.messages[0].text.find(file.toStdWString()), std::wstring::npos);
    EXPECT_NE(ui.messages[0].text.find(L"could not be opened"), std::wstring::npos);
}

TEST(RuleDlgBase, MissingHelpFileIsReportedAndNothingOpens) {
    EnsureQtTestApp();
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    CZebRecordingUiService ui;
    const std::wstring missing = root.filePath("res/en/vantor.html").toStdWString();
    RecordingDlg dlg(missing);
    dlg.SetHelpTopic(L"rule-hole-alignment");
    ShowActive(&dlg);
    ClickHelp(dlg);
    EXPECT_TRUE(ui.opened.empty());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].caption, L"Vantor");
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(ui.messages[0].text, L"The help file " + missing + L" is missing.");
    EXPECT_TRUE(dlg.isVisible());

    // A folder in place of the file, and no help file named at all, are missing too.
    RecordingDlg folder(root.path().toStdWString());
    ShowActive(&folder);
    ClickHelp(folder);
    RecordingDlg unnamed(L"");
    ShowActive(&unnamed);
    ClickHelp(unnamed);
    EXPECT_TRUE(ui.opened.empty());
    ASSERT_EQ(ui.messages.size(), 3u);
    EXPECT_EQ(ui.messages[1].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(ui.messages[2].text, L"The help file is missing.");
}

TEST(HelpUrl, EncodesThePathAndReadsBackToTheSameFile) {
    const QString odd = "/srv/Vantor Help #3/100% fertig/Größe/vantor.html";
    const QString text = QString::fromStdWString(ZebHelpUrl(odd.toStdWString(), L"topic-12"));
    EXPECT_EQ(text.toStdString(),
              "file:///srv/Vantor%20Help%20%233/100%25%20fertig/Gr%C3%B6%C3%9Fe/vantor.html#topic-12");
    const QUrl url(text);
    EXPECT_EQ(url.toLocalFile().toStdString(), odd.toStdString());
    EXPECT_EQ(url.fragment().toStdString(), "topic-12");
    EXPECT_EQ(ZebHelpUrl(odd.toStdWString(), L""), text.left(text.indexOf('#')).toStdWString());
    // A relative path is taken from the current folder.
    const QUrl relative(QString::fromStdWString(ZebHelpUrl(L"res/en/vantor.html", L"")));
    EXPECT_EQ(relative.toLocalFile().toStdString(),
              QDir::current().absoluteFilePath("res/en/vantor.html").toStdString());
}

TEST(HelpFile, ShipsBesideEachResourceLibraryWithEverySectionTheProductNames) {
    EnsureQtTestApp();
    // The application object names the help file of the build tree, and it is there.
    ASSERT_NE(GetAssemblyRulesApp(), nullptr);
    EXPECT_TRUE(QFileInfo(QString::fromStdWString(GetAssemblyRulesApp()->m_helpFilePath)).isFile())
        << QString::fromStdWString(GetAssemblyRulesApp()->m_helpFilePath).toStdString();

    // The scan of the sources finds literal topics, and each of them must have its section.
    EXPECT_EQ(TopicsIn(R"(SetHelpTopic(L"rule-a"); x.SetHelpTopic( L"dlg-b" ); SetHelpTopic(name);)"),
              (std::set<QString>{"rule-a", "dlg-b"}));
    std::set<QString> required = TopicsNamedInSources();
    for (const char* section : kHelpSections) required.insert(section);
    const QRegularExpression anchor("^[A-Za-z][A-Za-z0-9_-]*$");

    std::vector<std::string> englishIds;
    for (const QString lang : {"en", "de"}) {
        SCOPED_TRACE(lang.toStdString());
        const QString folder = QString(VANTOR_BUILD_DIR) + "/share/vantor/res/" + lang;
        const QString library = folder + "/" + QString::fromStdWString(kZebResourceFileName);
        ASSERT_TRUE(QFileInfo(library).isFile()) << library.toStdString();
        const HelpPage page = ReadHelpPage(folder + "/" + QString::fromStdWString(CZEBAssemblyRulesApp::kHelpFileName));
        ASSERT_TRUE(page.error.isEmpty()) << page.error.toStdString();
        EXPECT_EQ(page.lang.toStdString(), lang.toStdString());
        EXPECT_EQ(page.scripts, 0);

        std::vector<QString> sorted = page.ids;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end()) << "an id is used twice";
        const std::set<QString> ids(sorted.begin(), sorted.end());
        for (const QString& topic : required) {
            EXPECT_TRUE(anchor.match(topic).hasMatch()) << "not an anchor id: " << topic.toStdString();
            EXPECT_TRUE(ids.count(topic)) << "no section " << topic.toStdString();
        }

        // Self-contained: every link and source is a section of the same file.
        for (const QString& reference : page.references)
            EXPECT_TRUE(reference.startsWith('#') && ids.count(reference.mid(1)))
                << "link " << reference.toStdString();
        // The table of contents leads to every section that the product names.
        const std::set<QString> contents(page.contentsLinks.begin(), page.contentsLinks.end());
        for (const QString& topic : required)
            EXPECT_TRUE(contents.count("#" + topic)) << "not in the contents: " << topic.toStdString();

        // Rule, module and severity names as the product shows them in this language.
        const std::unique_ptr<CZebResourceLibrary> strings(CZebResourceLibrary::Load(library.toStdWString()));
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
        if (lang == "en") englishIds = idTexts;
        else EXPECT_EQ(idTexts, englishIds);
    }
}
