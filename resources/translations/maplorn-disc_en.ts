<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>NoDevice</source>
        <translation>No recorder is attached.</translation>
    </message>
</context>
<context>
    <name>ViewController</name>
    <message>
        <source>Root Node</source>
        <translation>Modules</translation>
    </message>
</context>
</TS>
