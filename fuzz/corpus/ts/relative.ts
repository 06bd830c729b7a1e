<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Library:/Say</name>
    <message>
        <location filename="../Say/box.xar" line="+12"/>
        <location line="+5"/>
        <location filename="../Say/other.xar" line="+1"/>
        <location filename="../Say/box.xar" line="-3"/>
        <source>Say</source>
        <translation>Sagen</translation>
    </message>
    <message>
        <location line="+0"/>
        <location/>
        <source>Shout</source>
        <translation type="unfinished">Rufen</translation>
    </message>
</context>
</TS>
