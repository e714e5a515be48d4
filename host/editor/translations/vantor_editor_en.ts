<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- English needs a translation only where a text counts something: Qt takes the singular or
     the plural from here. -->
<TS version="2.1" language="en_US">
<context>
    <name>CRuleSetEditor</name>
    <message numerus="yes">
        <source>%n row(s)</source>
        <translation>
            <numerusform>%n row</numerusform>
            <numerusform>%n rows</numerusform>
        </translation>
    </message>
</context>
</TS>
