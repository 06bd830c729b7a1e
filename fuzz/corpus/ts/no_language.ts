<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1">
<context>
    <name>Library:/Box</name>
    <message>
        <source>Box</source>
        <translation>Box</translation>
    </message>
</context>
</TS>
