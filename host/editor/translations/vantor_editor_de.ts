<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>CRuleSetEditor</name>
    <message>
        <source>%1 could not be opened.</source>
        <translation>%1 konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>The rules were not saved.</source>
        <translation>Die Regeln wurden nicht gespeichert.</translation>
    </message>
    <message>
        <source>No rules were imported.</source>
        <translation>Es wurden keine Regeln importiert.</translation>
    </message>
    <message>
        <source>The rule set could not be compared with %1.</source>
        <translation>Der Regelsatz konnte nicht mit %1 verglichen werden.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="116"/>
        <source>Settings documents|*.vantor.xml;*.xml|All files|*</source>
        <translation>Einstellungsdokumente|*.vantor.xml;*.xml|Alle Dateien|*</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="131"/>
        <source>Severity: %1</source>
        <translation>Schweregrad: %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="132"/>
        <source>Lengths in %1</source>
        <translation>Längen in %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="183"/>
        <source>Parameter %1</source>
        <translation>Parameter %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="251"/>
        <source>on</source>
        <translation>ein</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="251"/>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="272"/>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message numerus="yes">
        <location filename="../rule_set_editor.cpp" line="139"/>
        <source>%n row(s)</source>
        <translation>
            <numerusform>%n Zeile</numerusform>
            <numerusform>%n Zeilen</numerusform>
        </translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="157"/>
        <location filename="../rule_set_editor.cpp" line="596"/>
        <source>Import Rules</source>
        <translation>Regeln importieren</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="215"/>
        <source>Filter rules by name (Ctrl+F)</source>
        <translation>Regeln nach Namen filtern (Strg+F)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="223"/>
        <source>Rule</source>
        <translation>Regel</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="223"/>
        <source>Severity</source>
        <translation>Schweregrad</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="223"/>
        <source>Summary</source>
        <translation>Zusammenfassung</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="270"/>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="271"/>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="272"/>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="273"/>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="276"/>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="277"/>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="279"/>
        <source>&amp;Import Rules from File...</source>
        <translation>Regeln aus Datei &amp;importieren...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="281"/>
        <source>Co&amp;mpare with File...</source>
        <translation>Mit Datei &amp;vergleichen...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="283"/>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="285"/>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="286"/>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="288"/>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="293"/>
        <source>&amp;Find Rule</source>
        <translation>Regel &amp;suchen</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="298"/>
        <source>&amp;Rules</source>
        <translation>&amp;Regeln</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="299"/>
        <source>&amp;Configure...</source>
        <translation>&amp;Konfigurieren...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="301"/>
        <source>&amp;Severity</source>
        <translation>&amp;Schweregrad</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="305"/>
        <source>&amp;Add Rule</source>
        <translation>Regel &amp;hinzufügen</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="306"/>
        <source>&amp;Remove Rule...</source>
        <translation>Regel &amp;entfernen...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="307"/>
        <source>Reset to &amp;Defaults...</source>
        <translation>Auf &amp;Standardwerte zurücksetzen...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="129"/>
        <source>(off)</source>
        <translation>(aus)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="136"/>
        <source>In use: checked by an assembly check.</source>
        <translation>In Gebrauch: wird von der Baugruppenprüfung geprüft.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="137"/>
        <source>Switched off: kept with its values, but not checked by an assembly check.</source>
        <translation>Ausgeschaltet: bleibt mit ihren Werten erhalten, wird aber von der Baugruppenprüfung nicht geprüft.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="336"/>
        <source>S&amp;witch On/Off</source>
        <translation>Ein-/&amp;Ausschalten</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="134"/>
        <source>The settings hold no status for &quot;%1&quot;: it is always checked and cannot be switched off.</source>
        <translation>Die Einstellungen enthalten keinen Status für „%1“: die Regel wird immer geprüft und kann nicht ausgeschaltet werden.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="632"/>
        <source>Switch On %1</source>
        <translation>%1 einschalten</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="632"/>
        <source>Switch Off %1</source>
        <translation>%1 ausschalten</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="557"/>
        <source>Remove the rule &quot;%1&quot; from the rule set?</source>
        <translation>Die Regel „%1“ aus dem Regelsatz entfernen?</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="558"/>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="566"/>
        <source>Set every value of the rule &quot;%1&quot; back to its default?</source>
        <translation>Alle Werte der Regel „%1“ auf ihre Standardwerte zurücksetzen?</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="567"/>
        <source>Reset %1</source>
        <translation>%1 zurücksetzen</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="573"/>
        <source>Severity of %1</source>
        <translation>Schweregrad von %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="579"/>
        <source>Unit %1</source>
        <translation>Einheit %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="590"/>
        <source>%1 holds no rule of this module.</source>
        <translation>%1 enthält keine Regel dieses Moduls.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="591"/>
        <source>Rules in %1. Those the rule set has already are replaced.</source>
        <translation>Regeln in %1. Regeln, die der Regelsatz schon enthält, werden ersetzt.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="593"/>
        <source>Their values are converted from %1 to %2.</source>
        <translation>Ihre Werte werden von %1 in %2 umgerechnet.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="617"/>
        <source>The rule set and %1 hold the same rules and values.</source>
        <translation>Der Regelsatz und %1 enthalten dieselben Regeln und Werte.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="620"/>
        <source>Differences from %1</source>
        <translation>Unterschiede zu %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="622"/>
        <source>Lines with - are the open rule set&apos;s, lines with + those of %1; values in the open rule set&apos;s unit.</source>
        <translation>Zeilen mit - gehören zum geöffneten Regelsatz, Zeilen mit + zu %1; Werte in der Einheit des geöffneten Regelsatzes.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="310"/>
        <source>&amp;Units</source>
        <translation>&amp;Einheiten</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="321"/>
        <source>&amp;Database</source>
        <translation>Daten&amp;bank</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="322"/>
        <source>&amp;Fastener Database...</source>
        <translation>&amp;Verbindungselement-Datenbank...</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="325"/>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="326"/>
        <source>Help on the &amp;Rule</source>
        <translation>Hilfe zur &amp;Regel</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="327"/>
        <source>Rule &amp;Sets</source>
        <translation>Regel&amp;sätze</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="344"/>
        <source>Add %1</source>
        <translation>%1 hinzufügen</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="368"/>
        <location filename="../rule_set_editor.cpp" line="381"/>
        <location filename="../rule_set_editor.cpp" line="550"/>
        <source>No rule of this module reads this rule; it is kept as it stands.</source>
        <translation>Keine Regel dieses Moduls liest diese Regel; sie bleibt unverändert erhalten.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="424"/>
        <location filename="../rule_set_editor.cpp" line="478"/>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="425"/>
        <source>(read-only)</source>
        <translation>(schreibgeschützt)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="426"/>
        <source>Vantor Rules</source>
        <translation>Vantor-Regeln</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="430"/>
        <source>Unit: %1</source>
        <translation>Einheit: %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="432"/>
        <source>Database: %1</source>
        <translation>Datenbank: %1</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="433"/>
        <source>No database</source>
        <translation>Keine Datenbank</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="479"/>
        <source>%1 has unsaved changes. Save them?</source>
        <translation>%1 enthält ungespeicherte Änderungen. Speichern?</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="491"/>
        <source>Open it read-only? It will not be saved over.</source>
        <translation>Schreibgeschützt öffnen? Die Datei wird nicht überschrieben.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="543"/>
        <source>Configure %1</source>
        <translation>%1 konfigurieren</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="548"/>
        <source>This rule has no dialog to configure it.</source>
        <translation>Für diese Regel gibt es keinen Konfigurationsdialog.</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp"/>
        <source>Check &amp;Assembly...</source>
        <translation>Baugruppe p&amp;rüfen...</translation>
    </message>
</context>
<context>
    <name>Units</name>
    <message>
        <location filename="../rule_set_editor.cpp" line="93"/>
        <source>Millimetres (mm)</source>
        <translation>Millimeter (mm)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="93"/>
        <source>Centimetres (cm)</source>
        <translation>Zentimeter (cm)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="94"/>
        <source>Metres (m)</source>
        <translation>Meter (m)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="94"/>
        <source>Inches (in)</source>
        <translation>Zoll (in)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="95"/>
        <source>Feet (ft)</source>
        <translation>Fuß (ft)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="95"/>
        <source>Nanometres (nm)</source>
        <translation>Nanometer (nm)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="96"/>
        <source>Micrometres (µm)</source>
        <translation>Mikrometer (µm)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="96"/>
        <source>Decimetres (dm)</source>
        <translation>Dezimeter (dm)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="97"/>
        <source>Yards (yd)</source>
        <translation>Yards (yd)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="97"/>
        <source>Thousandths of an inch (mil)</source>
        <translation>Tausendstel Zoll (mil)</translation>
    </message>
    <message>
        <location filename="../rule_set_editor.cpp" line="98"/>
        <source>Kilometres (km)</source>
        <translation>Kilometer (km)</translation>
    </message>
</context>
<context>
    <name>CAssemblyCheck</name>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Assembly Check</source>
        <translation>Baugruppenprüfung</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>&amp;Rule:</source>
        <translation>&amp;Regel:</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>&amp;Save Report...</source>
        <translation>Bericht &amp;speichern...</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Rule</source>
        <translation>Regel</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Severity</source>
        <translation>Schweregrad</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Parts</source>
        <translation>Teile</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Limit</source>
        <translation>Grenzwert</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>STEP assemblies|*.stp;*.step;*.STP;*.STEP|All files|*</source>
        <translation>STEP-Baugruppen|*.stp;*.step;*.STP;*.STEP|Alle Dateien|*</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>The assembly engine cannot be loaded: %1</source>
        <translation>Das Prüfmodul für Baugruppen kann nicht geladen werden: %1</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Reading the assembly...</source>
        <translation>Die Baugruppe wird gelesen...</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Check Assembly</source>
        <translation>Baugruppe prüfen</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Cancelling...</source>
        <translation>Wird abgebrochen...</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>The assembly cannot be checked: %1</source>
        <translation>Die Baugruppe kann nicht geprüft werden: %1</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>All rules</source>
        <translation>Alle Regeln</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>Assembly Check: %1 parts, %2 findings in %3</source>
        <translation>Baugruppenprüfung: %1 Teile, %2 Befunde in %3</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>HTML page|*.html|JSON document|*.json</source>
        <translation>HTML-Seite|*.html|JSON-Dokument|*.json</translation>
    </message>
    <message>
        <location filename="../check_assembly.cpp"/>
        <source>The report cannot be written to %1: %2</source>
        <translation>Der Bericht kann nicht nach %1 geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>CRuleSetDocument</name>
    <message>
        <source>%1: not a settings document (its root element is &lt;%2&gt;, not &lt;%3&gt;)</source>
        <translation>%1: kein Einstellungsdokument (sein Wurzelelement ist &lt;%2&gt;, nicht &lt;%3&gt;)</translation>
    </message>
    <message>
        <source>The rule &quot;%1&quot; could not be written.</source>
        <translation>Die Regel „%1“ konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>%1 is not a settings document and is not written over; save the rules under another name.</source>
        <translation>%1 ist kein Einstellungsdokument und wird nicht überschrieben; speichern Sie die Regeln unter einem anderen Namen.</translation>
    </message>
    <message>
        <source>A rule of %1 could not be written.</source>
        <translation>Eine Regel aus %1 konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The unit cannot be changed: no rule of the module reads the rule &quot;%1&quot;, so its values cannot be converted from %2 to %3. Nothing was changed.</source>
        <translation>Die Einheit kann nicht geändert werden: Keine Regel des Moduls liest die Regel „%1“, daher können ihre Werte nicht von %2 in %3 umgerechnet werden. Es wurde nichts geändert.</translation>
    </message>
</context>
<context>
    <name>ZebOpenHelp</name>
    <message>
        <source>The help file is missing.</source>
        <translation>Die Hilfedatei fehlt.</translation>
    </message>
    <message>
        <source>The help file %1 is missing.</source>
        <translation>Die Hilfedatei %1 fehlt.</translation>
    </message>
    <message>
        <source>The help file %1 could not be opened. Open it in a web browser.</source>
        <translation>Die Hilfedatei %1 konnte nicht geöffnet werden. Öffnen Sie sie in einem Webbrowser.</translation>
    </message>
</context>
</TS>
