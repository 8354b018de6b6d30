<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>QtEventMapper</name>
    <message>
        <source>Interaction</source>
        <translation>Interaktion</translation>
    </message>
</context>
<context>
    <name>koShortcut</name>
    <message>
        <source>Left button</source>
        <translation>Linke Maustaste</translation>
    </message>
    <message>
        <source>Right button</source>
        <translation>Rechte Maustaste</translation>
    </message>
    <message>
        <source>Middle button</source>
        <translation>Mittlere Maustaste</translation>
    </message>
    <message>
        <source>Back button</source>
        <translation>Zurück-Taste</translation>
    </message>
    <message>
        <source>Forward button</source>
        <translation>Vorwärts-Taste</translation>
    </message>
    <message>
        <source>Task button</source>
        <translation>Task-Taste</translation>
    </message>
    <message>
        <source>Button 0x%1</source>
        <translation>Maustaste 0x%1</translation>
    </message>
</context>
</TS>
