<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>CRuleSetEditor</name>
    <message>
        <source>Settings documents|*.xml|All files|*</source>
        <translation>Einstellungsdokumente|*.xml|Alle Dateien|*</translation>
    </message>
    <message>
        <source>Rule</source>
        <translation>Regel</translation>
    </message>
    <message>
        <source>Severity</source>
        <translation>Schweregrad</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Zusammenfassung</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Rules</source>
        <translation>&amp;Regeln</translation>
    </message>
    <message>
        <source>&amp;Configure...</source>
        <translation>&amp;Konfigurieren...</translation>
    </message>
    <message>
        <source>&amp;Add Rule</source>
        <translation>Regel &amp;hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Remove Rule</source>
        <translation>Regel &amp;entfernen</translation>
    </message>
    <message>
        <source>Reset to &amp;Defaults</source>
        <translation>Auf &amp;Standardwerte zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Units</source>
        <translation>&amp;Einheiten</translation>
    </message>
    <message>
        <source>&amp;Database</source>
        <translation>Daten&amp;bank</translation>
    </message>
    <message>
        <source>&amp;Fastener Database...</source>
        <translation>&amp;Verbindungselement-Datenbank...</translation>
    </message>
    <message>
        <source>No rule of this module reads this rule; it is kept as it stands.</source>
        <translation>Keine Regel dieses Moduls liest diese Regel; sie bleibt unverändert erhalten.</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Vantor Rules</source>
        <translation>Vantor-Regeln</translation>
    </message>
    <message>
        <source>Unit: %1</source>
        <translation>Einheit: %1</translation>
    </message>
    <message>
        <source>Database: %1</source>
        <translation>Datenbank: %1</translation>
    </message>
    <message>
        <source>No database</source>
        <translation>Keine Datenbank</translation>
    </message>
    <message>
        <source>%1 has unsaved changes. Save them?</source>
        <translation>%1 enthält ungespeicherte Änderungen. Speichern?</translation>
    </message>
    <message>
        <source>This rule has no dialog to configure it.</source>
        <translation>Für diese Regel gibt es keinen Konfigurationsdialog.</translation>
    </message>
</context>
<context>
    <name>Units</name>
    <message>
        <source>Millimetres (mm)</source>
        <translation>Millimeter (mm)</translation>
    </message>
    <message>
        <source>Centimetres (cm)</source>
        <translation>Zentimeter (cm)</translation>
    </message>
    <message>
        <source>Metres (m)</source>
        <translation>Meter (m)</translation>
    </message>
    <message>
        <source>Inches (in)</source>
        <translation>Zoll (in)</translation>
    </message>
    <message>
        <source>Feet (ft)</source>
        <translation>Fuß (ft)</translation>
    </message>
    <message>
        <source>Nanometres (nm)</source>
        <translation>Nanometer (nm)</translation>
    </message>
    <message>
        <source>Micrometres (µm)</source>
        <translation>Mikrometer (µm)</translation>
    </message>
    <message>
        <source>Decimetres (dm)</source>
        <translation>Dezimeter (dm)</translation>
    </message>
    <message>
        <source>Yards (yd)</source>
        <translation>Yards (yd)</translation>
    </message>
    <message>
        <source>Thousandths of an inch (mil)</source>
        <translation>Tausendstel Zoll (mil)</translation>
    </message>
    <message>
        <source>Kilometres (km)</source>
        <translation>Kilometer (km)</translation>
    </message>
</context>
</TS>
