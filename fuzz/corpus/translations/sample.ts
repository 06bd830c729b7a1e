<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Library:/Logic/Not</name>
    <message>
        <source>Turns true into false and false into true.</source>
        <translation>Change le vrai en faux et le faux en vrai.</translation>
    </message>
    <message>
        <source>a</source>
        <translation>a</translation>
    </message>
    <message>
        <source>The first condition.</source>
        <translation>La première condition.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>résultat</translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation>Le résultat, à chaque changement d’une entrée.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Stop walking</name>
    <message>
        <source>Comes to a halt with both feet on the ground, whatever box made the robot walk.</source>
        <translation>S’immobilise, les deux pieds au sol, quelle que soit la boîte qui faisait marcher le robot.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Démarre la boîte.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
</context>
</TS>
