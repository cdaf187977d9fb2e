<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>FileProgressDialog</name>
    <message>
        <source>Show in Windows Explorer</source>
        <translation>Show in File Manager</translation>
    </message>
</context>
<context>
    <name>KrvFontManagerWindow</name>
    <message>
        <source>Show in Windows Explorer</source>
        <translation>Show in File Manager</translation>
    </message>
</context>
</TS>
