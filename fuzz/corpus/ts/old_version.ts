<!DOCTYPE TS><TS version="1.1" language="ar">
<defaultcodec>UTF-8</defaultcodec>
<context encoding="UTF-8">
    <name>Library:/Dance</name>
    <message utf8="true" encoding='UTF-8'>
        <location filename="./Dance//box.xar" line="7"></location>
        <source>Dance</source><translation>رقص</translation>
    </message>
    <message numerus="yes">
        <source>%n dance(s)</source>
        <translation><numerusform>a</numerusform></translation>
    </message>
    <message numerus="yes"><source>none</source></message>
    <message>
        <source>Gone</source>
        <translation type="obsolete"></translation>
    </message>
</context>
</TS>
