<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<dependencies>
<dependency catalog="qtbase_fr"/>
<dependency catalog="qtsystems_fr"/>
</dependencies>
    <extra-po-header_po_revision_date>2026-01-01</extra-po-header_po_revision_date>
    <extra-po-headers>a,b</extra-po-headers>
<context>
    <name>Library:/Motions/Walk &amp; turn</name>
    <message>
        <location filename="../Motions/Walk/box.xar" line="12"/>
        <location filename="../Motions/Walk/box.xar"/>
        <source>Walk &lt;b&gt;fast&lt;/b&gt;</source>
        <oldsource>Walk</oldsource>
        <comment>tooltip</comment>
        <oldcomment>name</oldcomment>
        <extracomment>shown in the panel</extracomment>
        <translatorcomment>to be checked with the team</translatorcomment>
        <translation>Marcher &lt;b&gt;vite&lt;/b&gt;&#xa0;!</translation>
        <extra-po-flags>fuzzy</extra-po-flags>
        <extra-po-references>a:1</extra-po-references>
        <userdata>kept "as" it's</userdata>
    </message>
    <message id="walk.steps" numerus="yes">
        <source>%n step(s)</source>
        <translation>
            <numerusform>%n pas</numerusform>
            <numerusform variants="yes">
                <lengthvariant>%n pas en tout</lengthvariant>
                <lengthvariant>%n pas</lengthvariant>
            </numerusform>
        </translation>
    </message>
    <message>
        <source>Not yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bell<byte value="x7"/>	tab
and line<byte value="xd"/></source>
        <translation type="vanished">Cloche</translation>
    </message>
    <message>
        <source>Old</source>
        <translation type="obsolete">Vieux</translation>
    </message>
</context>
<context>
    <name></name>
    <message>
        <source></source>
        <comment>what the context is about</comment>
        <translation variants="yes">
            <lengthvariant>long</lengthvariant>
            <lengthvariant></lengthvariant>
            <lengthvariant>l</lengthvariant>
        </translation>
    </message>
</context>
</TS>
