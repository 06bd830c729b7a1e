<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Library:/Motion/Posture/Stand up</name>
    <message>
        <source>Gets up from any posture and stands still.</source>
        <translation>Steht aus jeder Haltung auf und bleibt still stehen.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Wie schnell die Bewegung ist, in Prozent der Höchstgeschwindigkeit.</translation>
    </message>
    <message>
        <source>tries</source>
        <translation>Versuche</translation>
    </message>
    <message>
        <source>How often it tries before it gives up.</source>
        <translation>Wie oft es versucht wird, bevor es aufgegeben wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Sit down</name>
    <message>
        <source>Sits down on the floor, slowly enough not to fall.</source>
        <translation>Setzt sich auf den Boden, langsam genug, um nicht umzufallen.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Wie schnell die Bewegung ist, in Prozent der Höchstgeschwindigkeit.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Crouch</name>
    <message>
        <source>Bends the knees and lowers the body, ready to get up again.</source>
        <translation>Beugt die Knie und senkt den Körper, bereit, wieder aufzustehen.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>depth</source>
        <translation>Tiefe</translation>
    </message>
    <message>
        <source>How far the body goes down, in centimetres.</source>
        <translation>Wie weit der Körper sinkt, in Zentimetern.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Go limp</name>
    <message>
        <source>Takes the power off some motors, so that they can be moved by hand.
The robot must sit or be held.</source>
        <translation>Schaltet einige Motoren stromlos, damit sie sich von Hand bewegen lassen.
Der Roboter muss sitzen oder gehalten werden.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>motors</source>
        <translation>Motoren</translation>
    </message>
    <message>
        <source>The group of motors.</source>
        <translation>Die Gruppe der Motoren.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Walk</name>
    <message>
        <source>Walks straight ahead, or backwards when the distance is negative.</source>
        <translation>Geht geradeaus, oder rückwärts, wenn die Strecke negativ ist.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>blocked</source>
        <translation>blockiert</translation>
    </message>
    <message>
        <source>Comes when something is in the way, with its distance in metres.</source>
        <translation>Kommt, wenn etwas im Weg ist, mit seinem Abstand in Metern.</translation>
    </message>
    <message>
        <source>distance</source>
        <translation>Strecke</translation>
    </message>
    <message>
        <source>How far it walks, in metres.</source>
        <translation>Wie weit gegangen wird, in Metern.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Wie schnell die Bewegung ist, in Prozent der Höchstgeschwindigkeit.</translation>
    </message>
    <message>
        <source>avoid obstacles</source>
        <translation>Hindernissen ausweichen</translation>
    </message>
    <message>
        <source>Walks around what is in the way instead of stopping.</source>
        <translation>Geht um Hindernisse herum, statt anzuhalten.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Turn</name>
    <message>
        <source>Turns on the spot.</source>
        <translation>Dreht sich auf der Stelle.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>angle</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>How far it turns, in degrees; positive is to the left.</source>
        <translation>Wie weit gedreht wird, in Grad; positiv ist nach links.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Wie schnell die Bewegung ist, in Prozent der Höchstgeschwindigkeit.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Go to%3a x, y</name>
    <message>
        <source>Walks to a place on the map and looks into the given direction there.</source>
        <translation>Geht zu einer Stelle auf der Karte und blickt dort in die angegebene Richtung.</translation>
    </message>
    <message>
        <source>place</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Starts walking to this place: x and y in metres, direction in degrees.</source>
        <translation>Geht zu diesem Ort los: x und y in Metern, Richtung in Grad.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Kommt, wenn es nicht ging, mit dem Grund.</translation>
    </message>
    <message>
        <source>map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>The file with the map of the room.</source>
        <translation>Die Datei mit der Karte des Raums.</translation>
    </message>
    <message>
        <source>tolerance</source>
        <translation>Toleranz</translation>
    </message>
    <message>
        <source>How near is near enough, in metres.</source>
        <translation>Welcher Abstand vom Ziel genügt, in Metern.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Stop walking</name>
    <message>
        <source>Comes to a halt with both feet on the ground, whatever box made the robot walk.</source>
        <translation>Kommt mit beiden Füßen auf dem Boden zum Stehen, gleich welche Box den Roboter gehen ließ.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Wave</name>
    <message>
        <source>Raises an arm and waves hello or goodbye.</source>
        <translation>Hebt einen Arm und winkt zur Begrüßung oder zum Abschied.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>The arm that is used.</source>
        <translation>Der Arm, der benutzt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Nod</name>
    <message>
        <source>Nods the head, which most people take for a yes.</source>
        <translation>Nickt mit dem Kopf, was die meisten Menschen als Ja verstehen.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>How often the movement is repeated.</source>
        <translation>Wie oft die Bewegung wiederholt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Shake head</name>
    <message>
        <source>Shakes the head, which most people take for a no.</source>
        <translation>Schüttelt den Kopf, was die meisten Menschen als Nein verstehen.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>How often the movement is repeated.</source>
        <translation>Wie oft die Bewegung wiederholt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Bow</name>
    <message>
        <source>Bows politely and comes up again.</source>
        <translation>Verbeugt sich höflich und richtet sich wieder auf.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>angle</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>How deep it bows, in degrees.</source>
        <translation>Wie tief die Verbeugung ist, in Grad.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Point at</name>
    <message>
        <source>Stretches an arm out towards a point in the room.</source>
        <translation>Streckt einen Arm zu einem Punkt im Raum aus.</translation>
    </message>
    <message>
        <source>point</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>The point: x, y and z in metres from the robot&apos;s middle.</source>
        <translation>Der Punkt: x, y und z in Metern von der Mitte des Roboters aus.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Kommt, wenn es nicht ging, mit dem Grund.</translation>
    </message>
    <message>
        <source>side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>The arm that is used.</source>
        <translation>Der Arm, der benutzt wird.</translation>
    </message>
    <message>
        <source>look at it too</source>
        <translation>auch hinsehen</translation>
    </message>
    <message>
        <source>Turns the head towards the point as well.</source>
        <translation>Wendet auch den Kopf dem Punkt zu.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Olé!</name>
    <message>
        <source>Stamps, throws both arms up and calls out.</source>
        <translation>Stampft auf, wirft beide Arme hoch und ruft.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Schläge pro Minute.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Slow waltz</name>
    <message>
        <source>Sways from foot to foot in three-four time.</source>
        <translation>Wiegt sich im Dreivierteltakt von einem Fuß auf den anderen.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Schläge pro Minute.</translation>
    </message>
    <message>
        <source>melody</source>
        <translation>Melodie</translation>
    </message>
    <message>
        <source>The file with the notes.</source>
        <translation>Die Datei mit den Noten.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Left %2f right</name>
    <message>
        <source>Steps to the left and to the right, clapping in between.</source>
        <translation>Macht einen Schritt nach links und einen nach rechts und klatscht dazwischen.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Schläge pro Minute.</translation>
    </message>
    <message>
        <source>rounds</source>
        <translation>Runden</translation>
    </message>
    <message>
        <source>How often the whole dance is danced.</source>
        <translation>Wie oft der ganze Tanz getanzt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Say</name>
    <message>
        <source>Says a text and comes to its end when the last word is spoken.</source>
        <translation>Spricht einen Text und endet mit dem letzten Wort.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Says this text at once.</source>
        <translation>Spricht sofort diesen Text.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>word</source>
        <translation>Wort</translation>
    </message>
    <message>
        <source>Each word, when its turn comes.</source>
        <translation>Jedes Wort, wenn es an der Reihe ist.</translation>
    </message>
    <message>
        <source>voice</source>
        <translation>Stimme</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>Die Stimme, die spricht; auch die Namen installierter Stimmen sind möglich.</translation>
    </message>
    <message>
        <source>pitch</source>
        <translation>Tonhöhe</translation>
    </message>
    <message>
        <source>How high the voice is; 1 is its natural pitch.</source>
        <translation>Wie hoch die Stimme ist; 1 ist ihre natürliche Höhe.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Say ..%2e</name>
    <message>
        <source>Says one of several sentences, seldom the same one twice in a row.</source>
        <translation>Sagt einen von mehreren Sätzen, selten denselben zweimal nacheinander.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>sentences</source>
        <translation>Sätze</translation>
    </message>
    <message>
        <source>The file with the sentences, one in each line.</source>
        <translation>Die Datei mit den Sätzen, einer pro Zeile.</translation>
    </message>
    <message>
        <source>voice</source>
        <translation>Stimme</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>Die Stimme, die spricht; auch die Namen installierter Stimmen sind möglich.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Tell a story</name>
    <message>
        <source>Tells a short story with gestures.</source>
        <translation>Erzählt eine kurze Geschichte mit Gesten.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>The number of the page that begins.</source>
        <translation>Die Nummer der Seite, die beginnt.</translation>
    </message>
    <message>
        <source>story</source>
        <translation>Geschichte</translation>
    </message>
    <message>
        <source>The story that is told.</source>
        <translation>Die Geschichte, die erzählt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Volume</name>
    <message>
        <source>Makes the voice and all sounds louder or softer.</source>
        <translation>Macht die Stimme und alle Klänge lauter oder leiser.</translation>
    </message>
    <message>
        <source>level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Sets the volume, from 0 (silent) to 100.</source>
        <translation>Stellt die Lautstärke ein, von 0 (stumm) bis 100.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>Grenze</translation>
    </message>
    <message>
        <source>It never becomes louder than this.</source>
        <translation>Lauter als dieser Wert wird es nie.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Choose a language</name>
    <message>
        <source>Switches speaking and listening to another language.</source>
        <translation>Stellt Sprechen und Zuhören auf eine andere Sprache um.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Kommt, wenn es nicht ging, mit dem Grund.</translation>
    </message>
    <message>
        <source>language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>The language&apos;s code.</source>
        <translation>Das Kürzel der Sprache.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Yes or no%3f</name>
    <message>
        <source>Asks a question and listens for a yes or a no.</source>
        <translation>Stellt eine Frage und wartet auf ein Ja oder Nein.</translation>
    </message>
    <message>
        <source>question</source>
        <translation>Frage</translation>
    </message>
    <message>
        <source>Asks this question.</source>
        <translation>Stellt diese Frage.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>The answer was yes.</source>
        <translation>Die Antwort war Ja.</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>The answer was no.</source>
        <translation>Die Antwort war Nein.</translation>
    </message>
    <message>
        <source>silence</source>
        <translation>Stille</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation>Kommt, wenn niemand rechtzeitig antwortet.</translation>
    </message>
    <message>
        <source>patience</source>
        <translation>Geduld</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation>Wie lange auf eine Antwort gewartet wird, in Sekunden.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Ask%3a what is your name%3f</name>
    <message>
        <source>Asks for a name, and asks again to be sure.</source>
        <translation>Fragt nach einem Namen und fragt zur Sicherheit nach.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>The name that was given.</source>
        <translation>Der genannte Name.</translation>
    </message>
    <message>
        <source>silence</source>
        <translation>Stille</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation>Kommt, wenn niemand rechtzeitig antwortet.</translation>
    </message>
    <message>
        <source>patience</source>
        <translation>Geduld</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation>Wie lange auf eine Antwort gewartet wird, in Sekunden.</translation>
    </message>
    <message>
        <source>polite</source>
        <translation>höflich</translation>
    </message>
    <message>
        <source>Speaks to people formally, where the language has such a form.</source>
        <translation>Siezt die Leute, wenn die Sprache das kennt.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Listen for words</name>
    <message>
        <source>Listens until it hears one of some words.</source>
        <translation>Hört zu, bis eines von mehreren Wörtern fällt.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>heard</source>
        <translation>gehört</translation>
    </message>
    <message>
        <source>What was understood.</source>
        <translation>Was verstanden wurde.</translation>
    </message>
    <message>
        <source>silence</source>
        <translation>Stille</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation>Kommt, wenn niemand rechtzeitig antwortet.</translation>
    </message>
    <message>
        <source>words</source>
        <translation>Wörter</translation>
    </message>
    <message>
        <source>The words, with commas between them.</source>
        <translation>Die Wörter, durch Kommas getrennt.</translation>
    </message>
    <message>
        <source>patience</source>
        <translation>Geduld</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation>Wie lange auf eine Antwort gewartet wird, in Sekunden.</translation>
    </message>
    <message>
        <source>confidence</source>
        <translation>Sicherheit</translation>
    </message>
    <message>
        <source>How sure it must be, from 0 to 1.</source>
        <translation>Wie sicher es sein muss, von 0 bis 1.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Take a picture</name>
    <message>
        <source>Takes a picture and keeps it as a file.</source>
        <translation>Nimmt ein Bild auf und speichert es als Datei.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>The path of the file.</source>
        <translation>Der Pfad der Datei.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Kommt, wenn es nicht ging, mit dem Grund.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>Die Kamera, die hinsieht.</translation>
    </message>
    <message>
        <source>width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>How wide the picture is, in pixels.</source>
        <translation>Wie breit das Bild ist, in Pixeln.</translation>
    </message>
    <message>
        <source>countdown</source>
        <translation>Countdown</translation>
    </message>
    <message>
        <source>Counts down aloud before the picture is taken.</source>
        <translation>Zählt laut herunter, bevor das Bild aufgenommen wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Find faces</name>
    <message>
        <source>Tells how many faces there are, and where.</source>
        <translation>Sagt, wie viele Gesichter zu sehen sind und wo.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>count</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>How many faces are seen, whenever that changes.</source>
        <translation>Wie viele Gesichter zu sehen sind, sobald sich das ändert.</translation>
    </message>
    <message>
        <source>nearest</source>
        <translation>nächstes</translation>
    </message>
    <message>
        <source>Where the nearest face is: angles to the left and upwards, in degrees.</source>
        <translation>Wo das nächste Gesicht ist: Winkel nach links und nach oben, in Grad.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>Die Kamera, die hinsieht.</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>Rate</translation>
    </message>
    <message>
        <source>How often it looks, per second.</source>
        <translation>Wie oft pro Sekunde hingesehen wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Who is it%3f</name>
    <message>
        <source>Recognises people that the robot has met before.</source>
        <translation>Erkennt Menschen wieder, denen der Roboter schon begegnet ist.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>The name of the person.</source>
        <translation>Der Name der Person.</translation>
    </message>
    <message>
        <source>stranger</source>
        <translation>Fremder</translation>
    </message>
    <message>
        <source>Comes for a face that is not known.</source>
        <translation>Kommt bei einem unbekannten Gesicht.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>Die Kamera, die hinsieht.</translation>
    </message>
    <message>
        <source>learn</source>
        <translation>lernen</translation>
    </message>
    <message>
        <source>Remembers strangers, to recognise them the next time.</source>
        <translation>Merkt sich Fremde, um sie das nächste Mal zu erkennen.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Follow a colour</name>
    <message>
        <source>Keeps the head turned to the biggest patch of a colour.</source>
        <translation>Hält den Kopf auf den größten Fleck einer Farbe gerichtet.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>lost</source>
        <translation>verloren</translation>
    </message>
    <message>
        <source>Comes when the colour is no longer to be seen.</source>
        <translation>Kommt, wenn die Farbe nicht mehr zu sehen ist.</translation>
    </message>
    <message>
        <source>colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>A name from the table of colours, or #rrggbb.</source>
        <translation>Ein Name aus der Farbtabelle oder #rrggbb.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>Die Kamera, die hinsieht.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Bright or dark%3f</name>
    <message>
        <source>Tells whether there is light enough to see.</source>
        <translation>Sagt, ob es hell genug ist, um etwas zu sehen.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>bright</source>
        <translation>hell</translation>
    </message>
    <message>
        <source>There is light enough.</source>
        <translation>Es ist hell genug.</translation>
    </message>
    <message>
        <source>dark</source>
        <translation>dunkel</translation>
    </message>
    <message>
        <source>It is too dark.</source>
        <translation>Es ist zu dunkel.</translation>
    </message>
    <message>
        <source>threshold</source>
        <translation>Schwelle</translation>
    </message>
    <message>
        <source>The brightness between the two, from 0 to 255.</source>
        <translation>Die Helligkeit zwischen beidem, von 0 bis 255.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>Die Kamera, die hinsieht.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Battery %3c 20 %25</name>
    <message>
        <source>Warns when the battery runs low.</source>
        <translation>Warnt, wenn der Akku zur Neige geht.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Beginnt zu beobachten.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Hört auf zu beobachten.</translation>
    </message>
    <message>
        <source>low</source>
        <translation>niedrig</translation>
    </message>
    <message>
        <source>The charge fell below the limit; what is left, in percent.</source>
        <translation>Die Ladung fiel unter die Grenze; was übrig ist, in Prozent.</translation>
    </message>
    <message>
        <source>charging</source>
        <translation>lädt</translation>
    </message>
    <message>
        <source>The charger was plugged in.</source>
        <translation>Das Ladegerät wurde angeschlossen.</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>Grenze</translation>
    </message>
    <message>
        <source>The charge at which it warns, in percent.</source>
        <translation>Die Ladung, bei der gewarnt wird, in Prozent.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Temperature %3e limit</name>
    <message>
        <source>Warns when a motor becomes too hot.</source>
        <translation>Warnt, wenn ein Motor zu heiß wird.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Beginnt zu beobachten.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Hört auf zu beobachten.</translation>
    </message>
    <message>
        <source>hot</source>
        <translation>heiß</translation>
    </message>
    <message>
        <source>The name of the motor.</source>
        <translation>Der Name des Motors.</translation>
    </message>
    <message>
        <source>cool again</source>
        <translation>wieder kühl</translation>
    </message>
    <message>
        <source>All motors are below the limit again.</source>
        <translation>Alle Motoren sind wieder unter der Grenze.</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>Grenze</translation>
    </message>
    <message>
        <source>The temperature at which it warns, in degrees Celsius.</source>
        <translation>Die Temperatur, bei der gewarnt wird, in Grad Celsius.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Distance ahead</name>
    <message>
        <source>Measures how far the next thing in front of the robot is.</source>
        <translation>Misst, wie weit das nächste Ding vor dem Roboter entfernt ist.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Beginnt zu beobachten.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Hört auf zu beobachten.</translation>
    </message>
    <message>
        <source>metres</source>
        <translation>Meter</translation>
    </message>
    <message>
        <source>The distance, with each measurement.</source>
        <translation>Der Abstand, bei jeder Messung.</translation>
    </message>
    <message>
        <source>too near</source>
        <translation>zu nah</translation>
    </message>
    <message>
        <source>Something came nearer than allowed.</source>
        <translation>Etwas kam näher als erlaubt.</translation>
    </message>
    <message>
        <source>minimum</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>What is nearer than this, in metres, is too near.</source>
        <translation>Was näher ist als dieser Wert, in Metern, ist zu nah.</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>Rate</translation>
    </message>
    <message>
        <source>How often it measures, per second.</source>
        <translation>Wie oft pro Sekunde gemessen wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Where is that sound%3f</name>
    <message>
        <source>Tells from which direction a loud sound came.</source>
        <translation>Sagt, aus welcher Richtung ein lautes Geräusch kam.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Beginnt zu beobachten.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Hört auf zu beobachten.</translation>
    </message>
    <message>
        <source>direction</source>
        <translation>Richtung</translation>
    </message>
    <message>
        <source>The direction in degrees; positive is to the left.</source>
        <translation>Die Richtung in Grad; positiv ist nach links.</translation>
    </message>
    <message>
        <source>sensitivity</source>
        <translation>Empfindlichkeit</translation>
    </message>
    <message>
        <source>How easily it hears something, in percent.</source>
        <translation>Wie leicht etwas gehört wird, in Prozent.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Fallen over%3f</name>
    <message>
        <source>Notices when the robot has fallen, and onto which side.</source>
        <translation>Bemerkt, wenn der Roboter umgefallen ist, und auf welche Seite.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Beginnt zu beobachten.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Hört auf zu beobachten.</translation>
    </message>
    <message>
        <source>fallen</source>
        <translation>umgefallen</translation>
    </message>
    <message>
        <source>It lies on this side: front, back, left or right.</source>
        <translation>Er liegt auf dieser Seite: front, back, left oder right.</translation>
    </message>
    <message>
        <source>upright</source>
        <translation>aufrecht</translation>
    </message>
    <message>
        <source>It stands again.</source>
        <translation>Er steht wieder.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Touch/Head stroked</name>
    <message>
        <source>Notices a hand on the head, and which way it moves.</source>
        <translation>Bemerkt eine Hand auf dem Kopf und wohin sie streicht.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Beginnt zu beobachten.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Hört auf zu beobachten.</translation>
    </message>
    <message>
        <source>touched</source>
        <translation>berührt</translation>
    </message>
    <message>
        <source>A part of the head was touched: front, middle or back.</source>
        <translation>Ein Teil des Kopfs wurde berührt: front, middle oder back.</translation>
    </message>
    <message>
        <source>stroked</source>
        <translation>gestreichelt</translation>
    </message>
    <message>
        <source>The hand moved over the whole head.</source>
        <translation>Die Hand strich über den ganzen Kopf.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Touch/Hand held</name>
    <message>
        <source>Notices when someone takes the robot by the hand.</source>
        <translation>Bemerkt, wenn jemand den Roboter an die Hand nimmt.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Beginnt zu beobachten.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Hört auf zu beobachten.</translation>
    </message>
    <message>
        <source>taken</source>
        <translation>genommen</translation>
    </message>
    <message>
        <source>The hand was taken.</source>
        <translation>Die Hand wurde genommen.</translation>
    </message>
    <message>
        <source>let go</source>
        <translation>losgelassen</translation>
    </message>
    <message>
        <source>The hand was let go.</source>
        <translation>Die Hand wurde losgelassen.</translation>
    </message>
    <message>
        <source>side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>The hand that is watched.</source>
        <translation>Die Hand, die beobachtet wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Eye colour</name>
    <message>
        <source>Gives the lights in the eyes another colour.</source>
        <translation>Gibt den Lichtern in den Augen eine andere Farbe.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>A name of a colour, or #rrggbb.</source>
        <translation>Ein Farbname oder #rrggbb.</translation>
    </message>
    <message>
        <source>time</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>How long the change takes, in seconds.</source>
        <translation>Wie lange der Wechsel dauert, in Sekunden.</translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Blink</name>
    <message>
        <source>Blinks with both eyes, as if it had just woken up.</source>
        <translation>Blinzelt mit beiden Augen, wie gerade aufgewacht.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>How often it blinks.</source>
        <translation>Wie oft geblinzelt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Play a melody</name>
    <message>
        <source>Plays notes from a file.</source>
        <translation>Spielt Noten aus einer Datei.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>melody</source>
        <translation>Melodie</translation>
    </message>
    <message>
        <source>The file with the notes.</source>
        <translation>Die Datei mit den Noten.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Schläge pro Minute.</translation>
    </message>
    <message>
        <source>instrument</source>
        <translation>Instrument</translation>
    </message>
    <message>
        <source>What it sounds like.</source>
        <translation>Wie es klingt.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Both</name>
    <message>
        <source>True when both conditions are true.</source>
        <translation>Wahr, wenn beide Bedingungen wahr sind.</translation>
    </message>
    <message>
        <source>a</source>
        <translation>a</translation>
    </message>
    <message>
        <source>The first condition.</source>
        <translation>Die erste Bedingung.</translation>
    </message>
    <message>
        <source>b</source>
        <translation>b</translation>
    </message>
    <message>
        <source>The second condition.</source>
        <translation>Die zweite Bedingung.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation>Das Ergebnis, sobald sich ein Eingang ändert.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Either %7c or</name>
    <message>
        <source>True when at least one condition is true.</source>
        <translation>Wahr, wenn mindestens eine Bedingung wahr ist.</translation>
    </message>
    <message>
        <source>a</source>
        <translation>a</translation>
    </message>
    <message>
        <source>The first condition.</source>
        <translation>Die erste Bedingung.</translation>
    </message>
    <message>
        <source>b</source>
        <translation>b</translation>
    </message>
    <message>
        <source>The second condition.</source>
        <translation>Die zweite Bedingung.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation>Das Ergebnis, sobald sich ein Eingang ändert.</translation>
    </message>
    <message>
        <source>exclusive</source>
        <translation>ausschließlich</translation>
    </message>
    <message>
        <source>False when both are true.</source>
        <translation>Falsch, wenn beide wahr sind.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Not</name>
    <message>
        <source>Turns true into false and false into true.</source>
        <translation>Macht aus wahr falsch und aus falsch wahr.</translation>
    </message>
    <message>
        <source>a</source>
        <translation>a</translation>
    </message>
    <message>
        <source>The first condition.</source>
        <translation>Die erste Bedingung.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation>Das Ergebnis, sobald sich ein Eingang ändert.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Compare</name>
    <message>
        <source>Compares two numbers.</source>
        <translation>Vergleicht zwei Zahlen.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>The number that is looked at.</source>
        <translation>Die Zahl, die betrachtet wird.</translation>
    </message>
    <message>
        <source>less</source>
        <translation>kleiner</translation>
    </message>
    <message>
        <source>It is less than the other.</source>
        <translation>Sie ist kleiner als die andere.</translation>
    </message>
    <message>
        <source>equal</source>
        <translation>gleich</translation>
    </message>
    <message>
        <source>Both are equal.</source>
        <translation>Beide sind gleich.</translation>
    </message>
    <message>
        <source>greater</source>
        <translation>größer</translation>
    </message>
    <message>
        <source>It is greater than the other.</source>
        <translation>Sie ist größer als die andere.</translation>
    </message>
    <message>
        <source>other</source>
        <translation>andere</translation>
    </message>
    <message>
        <source>The number that it is compared with.</source>
        <translation>Die Zahl, mit der verglichen wird.</translation>
    </message>
    <message>
        <source>tolerance</source>
        <translation>Toleranz</translation>
    </message>
    <message>
        <source>Numbers that differ by no more than this are equal.</source>
        <translation>Zahlen, die sich höchstens um diesen Wert unterscheiden, sind gleich.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Chance%3a 50 %25</name>
    <message>
        <source>Lets chance decide.</source>
        <translation>Lässt den Zufall entscheiden.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>Chance said yes.</source>
        <translation>Der Zufall sagt Ja.</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>Chance said no.</source>
        <translation>Der Zufall sagt Nein.</translation>
    </message>
    <message>
        <source>chance</source>
        <translation>Wahrscheinlichkeit</translation>
    </message>
    <message>
        <source>How likely a yes is, in percent.</source>
        <translation>Wie wahrscheinlich ein Ja ist, in Prozent.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/On %2f off</name>
    <message>
        <source>Changes between on and off with each event.</source>
        <translation>Wechselt bei jedem Ereignis zwischen ein und aus.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>Changes to the other state.</source>
        <translation>Wechselt in den anderen Zustand.</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>zurücksetzen</translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation>Vergisst, was vorher kam.</translation>
    </message>
    <message>
        <source>on</source>
        <translation>ein</translation>
    </message>
    <message>
        <source>It is on now.</source>
        <translation>Es ist jetzt ein.</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>It is off now.</source>
        <translation>Es ist jetzt aus.</translation>
    </message>
    <message>
        <source>on at first</source>
        <translation>anfangs ein</translation>
    </message>
    <message>
        <source>The state in the beginning.</source>
        <translation>Der Zustand am Anfang.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Wait</name>
    <message>
        <source>Waits a while and then goes on.</source>
        <translation>Wartet eine Weile und macht dann weiter.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>How long, in seconds.</source>
        <translation>Wie lange, in Sekunden.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Wait for it%2e</name>
    <message>
        <source>Waits until an event has come a number of times.</source>
        <translation>Wartet, bis ein Ereignis eine bestimmte Anzahl von Malen gekommen ist.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>Counts one more.</source>
        <translation>Zählt eins weiter.</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>zurücksetzen</translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation>Vergisst, was vorher kam.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>fehlen noch</translation>
    </message>
    <message>
        <source>How many are still to come.</source>
        <translation>Wie viele noch fehlen.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>How many events it takes.</source>
        <translation>Wie viele Ereignisse nötig sind.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Repeat</name>
    <message>
        <source>Runs the boxes inside it again and again.</source>
        <translation>Führt die Boxen in ihr immer wieder aus.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>round done</source>
        <translation>Runde fertig</translation>
    </message>
    <message>
        <source>Linked from inside: the round has come to its end.</source>
        <translation>Von innen verbunden: Die Runde ist zu Ende.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>round</source>
        <translation>Runde</translation>
    </message>
    <message>
        <source>Links to what is inside: a round begins, with its number.</source>
        <translation>Nach innen: Eine Runde beginnt, mit ihrer Nummer.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>How many rounds; 0 means without end.</source>
        <translation>Wie viele Runden; 0 heißt ohne Ende.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/If %2f else</name>
    <message>
        <source>Sends a value one way or the other.</source>
        <translation>Schickt einen Wert in die eine oder die andere Richtung.</translation>
    </message>
    <message>
        <source>condition</source>
        <translation>Bedingung</translation>
    </message>
    <message>
        <source>Decides about the values that come afterwards.</source>
        <translation>Entscheidet über die Werte, die danach kommen.</translation>
    </message>
    <message>
        <source>value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>The value that is sent on.</source>
        <translation>Der Wert, der weitergeschickt wird.</translation>
    </message>
    <message>
        <source>then</source>
        <translation>dann</translation>
    </message>
    <message>
        <source>The value, when the condition is true.</source>
        <translation>Der Wert, wenn die Bedingung wahr ist.</translation>
    </message>
    <message>
        <source>else</source>
        <translation>sonst</translation>
    </message>
    <message>
        <source>The value, when the condition is false.</source>
        <translation>Der Wert, wenn die Bedingung falsch ist.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Which one%3f</name>
    <message>
        <source>Chooses an output by the text that comes in.</source>
        <translation>Wählt nach dem eingehenden Text einen Ausgang.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>The text that decides.</source>
        <translation>Der Text, der entscheidet.</translation>
    </message>
    <message>
        <source>first</source>
        <translation>erster</translation>
    </message>
    <message>
        <source>The text is the first one.</source>
        <translation>Der Text ist der erste.</translation>
    </message>
    <message>
        <source>second</source>
        <translation>zweiter</translation>
    </message>
    <message>
        <source>The text is the second one.</source>
        <translation>Der Text ist der zweite.</translation>
    </message>
    <message>
        <source>third</source>
        <translation>dritter</translation>
    </message>
    <message>
        <source>The text is the third one.</source>
        <translation>Der Text ist der dritte.</translation>
    </message>
    <message>
        <source>none of them</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>The text is another one.</source>
        <translation>Der Text ist ein anderer.</translation>
    </message>
    <message>
        <source>texts</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>The three texts, with commas between them.</source>
        <translation>Die drei Texte, durch Kommas getrennt.</translation>
    </message>
    <message>
        <source>exact</source>
        <translation>genau</translation>
    </message>
    <message>
        <source>Capital letters and spaces matter.</source>
        <translation>Großbuchstaben und Leerzeichen zählen.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Only once</name>
    <message>
        <source>Lets the first event through and no other.</source>
        <translation>Lässt das erste Ereignis durch und kein weiteres.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>Passes through the first time.</source>
        <translation>Kommt beim ersten Mal durch.</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>zurücksetzen</translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation>Vergisst, was vorher kam.</translation>
    </message>
    <message>
        <source>once</source>
        <translation>einmal</translation>
    </message>
    <message>
        <source>The first event.</source>
        <translation>Das erste Ereignis.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Time limit</name>
    <message>
        <source>Complains when something takes too long.</source>
        <translation>Meldet sich, wenn etwas zu lange dauert.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>in time</source>
        <translation>rechtzeitig</translation>
    </message>
    <message>
        <source>It is finished; the clock is stopped.</source>
        <translation>Es ist fertig; die Uhr wird angehalten.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>too late</source>
        <translation>zu spät</translation>
    </message>
    <message>
        <source>The time is over.</source>
        <translation>Die Zeit ist um.</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>How long, in seconds.</source>
        <translation>Wie lange, in Sekunden.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Remember</name>
    <message>
        <source>Keeps a value under a name, even when the robot is switched off.</source>
        <translation>Bewahrt einen Wert unter einem Namen auf, auch wenn der Roboter ausgeschaltet wird.</translation>
    </message>
    <message>
        <source>value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>The value to keep.</source>
        <translation>Der Wert, der aufbewahrt wird.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>The name under which the value is kept.</source>
        <translation>Der Name, unter dem der Wert aufbewahrt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Recall</name>
    <message>
        <source>Gives back a value that was kept.</source>
        <translation>Gibt einen aufbewahrten Wert zurück.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>The value that was kept.</source>
        <translation>Der aufbewahrte Wert.</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>There is no value of that name.</source>
        <translation>Es gibt keinen Wert dieses Namens.</translation>
    </message>
    <message>
        <source>key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>The name under which the value is kept.</source>
        <translation>Der Name, unter dem der Wert aufbewahrt wird.</translation>
    </message>
    <message>
        <source>otherwise</source>
        <translation>ansonsten</translation>
    </message>
    <message>
        <source>What is sent when there is none; nothing when this is empty.</source>
        <translation>Was gesendet wird, wenn es keinen gibt; nichts, wenn dies leer ist.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Write to the log</name>
    <message>
        <source>Writes a line into the robot&apos;s log.</source>
        <translation>Schreibt eine Zeile ins Protokoll des Roboters.</translation>
    </message>
    <message>
        <source>value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>What is written.</source>
        <translation>Was geschrieben wird.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>How important it is.</source>
        <translation>Wie wichtig es ist.</translation>
    </message>
    <message>
        <source>begins with</source>
        <translation>beginnt mit</translation>
    </message>
    <message>
        <source>A text in front of what is written.</source>
        <translation>Ein Text vor dem, was geschrieben wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Join texts</name>
    <message>
        <source>Puts two texts together.</source>
        <translation>Fügt zwei Texte zusammen.</translation>
    </message>
    <message>
        <source>front</source>
        <translation>vorn</translation>
    </message>
    <message>
        <source>The text in front.</source>
        <translation>Der vordere Text.</translation>
    </message>
    <message>
        <source>back</source>
        <translation>hinten</translation>
    </message>
    <message>
        <source>The text behind; both are then put together.</source>
        <translation>Der hintere Text; dann werden beide zusammengefügt.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>The new text.</source>
        <translation>Der neue Text.</translation>
    </message>
    <message>
        <source>between</source>
        <translation>dazwischen</translation>
    </message>
    <message>
        <source>What comes between the two.</source>
        <translation>Was zwischen beide kommt.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Split a text</name>
    <message>
        <source>Cuts a text into its parts.</source>
        <translation>Zerlegt einen Text in seine Teile.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>The text that is cut.</source>
        <translation>Der Text, der zerlegt wird.</translation>
    </message>
    <message>
        <source>part</source>
        <translation>Teil</translation>
    </message>
    <message>
        <source>Each part, one after the other.</source>
        <translation>Jeder Teil, einer nach dem anderen.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>at</source>
        <translation>Trennzeichen</translation>
    </message>
    <message>
        <source>Where it is cut.</source>
        <translation>Wo zerlegt wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Replace %2a and %3f</name>
    <message>
        <source>Replaces what matches a pattern, in which * stands for any text and ? for any one character.</source>
        <translation>Ersetzt, was zu einem Muster passt, in dem * für beliebigen Text und ? für ein beliebiges Zeichen steht.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>The text that is changed.</source>
        <translation>Der Text, der geändert wird.</translation>
    </message>
    <message>
        <source>The new text.</source>
        <translation>Der neue Text.</translation>
    </message>
    <message>
        <source>pattern</source>
        <translation>Muster</translation>
    </message>
    <message>
        <source>What is looked for.</source>
        <translation>Wonach gesucht wird.</translation>
    </message>
    <message>
        <source>by</source>
        <translation>durch</translation>
    </message>
    <message>
        <source>What comes in its place.</source>
        <translation>Was an die Stelle tritt.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Calculate%3a + - %2a %2f</name>
    <message>
        <source>Calculates with two numbers.</source>
        <translation>Rechnet mit zwei Zahlen.</translation>
    </message>
    <message>
        <source>x</source>
        <translation>x</translation>
    </message>
    <message>
        <source>The first number.</source>
        <translation>Die erste Zahl.</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>The second number; the calculation is then done.</source>
        <translation>Die zweite Zahl; dann wird gerechnet.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation>Das Ergebnis der Rechnung.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>The calculation has no result.</source>
        <translation>Die Rechnung hat kein Ergebnis.</translation>
    </message>
    <message>
        <source>operation</source>
        <translation>Rechenart</translation>
    </message>
    <message>
        <source>What is done with them.</source>
        <translation>Was mit ihnen gemacht wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Round</name>
    <message>
        <source>Rounds a number.</source>
        <translation>Rundet eine Zahl.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>The number that is rounded.</source>
        <translation>Die Zahl, die gerundet wird.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation>Das Ergebnis der Rechnung.</translation>
    </message>
    <message>
        <source>digits</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>How many digits stay after the point.</source>
        <translation>Wie viele Stellen nach dem Komma bleiben.</translation>
    </message>
    <message>
        <source>direction</source>
        <translation>Richtung</translation>
    </message>
    <message>
        <source>Where a number goes that lies between.</source>
        <translation>Wohin gerundet wird.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Map a range</name>
    <message>
        <source>Turns a number of one range into the matching one of another.</source>
        <translation>Überträgt eine Zahl aus einem Bereich in die entsprechende eines anderen.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>The number in the first range.</source>
        <translation>Die Zahl im ersten Bereich.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation>Das Ergebnis der Rechnung.</translation>
    </message>
    <message>
        <source>from</source>
        <translation>von</translation>
    </message>
    <message>
        <source>The lower end of the first range.</source>
        <translation>Das untere Ende des ersten Bereichs.</translation>
    </message>
    <message>
        <source>to</source>
        <translation>bis</translation>
    </message>
    <message>
        <source>The upper end of the first range.</source>
        <translation>Das obere Ende des ersten Bereichs.</translation>
    </message>
    <message>
        <source>new from</source>
        <translation>neu von</translation>
    </message>
    <message>
        <source>The lower end of the second range.</source>
        <translation>Das untere Ende des zweiten Bereichs.</translation>
    </message>
    <message>
        <source>new to</source>
        <translation>neu bis</translation>
    </message>
    <message>
        <source>The upper end of the second range.</source>
        <translation>Das obere Ende des zweiten Bereichs.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Empty box</name>
    <message>
        <source>A box with nothing but a start and an end, to write a script for.</source>
        <translation>Eine Box mit nichts als Anfang und Ende, zu der ein Skript zu schreiben ist.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Empty diagram</name>
    <message>
        <source>A box with a diagram inside, to put other boxes into.</source>
        <translation>Eine Box mit einem Diagramm, in das andere Boxen gesetzt werden.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Empty timeline</name>
    <message>
        <source>A behaviour with an empty timeline, to put movements and boxes onto.</source>
        <translation>Ein Verhalten mit leerer Zeitleiste, auf die Bewegungen und Boxen gesetzt werden.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>beim Laden</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Kommt einmal, wenn das Verhalten geladen wird.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>beim Start</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Startet das Verhalten bei seinem ersten Bild.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>beim Anhalten</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Hält das Verhalten dort an, wo es gerade ist.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>am Ende</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Kommt, wenn das letzte Bild abgespielt ist.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Box with states</name>
    <message>
        <source>A script that remembers in which state it is: a start for boxes that wait for several things.</source>
        <translation>Ein Skript, das sich seinen Zustand merkt: ein Anfang für Boxen, die auf mehreres warten.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>Goes on to the next state.</source>
        <translation>Geht zum nächsten Zustand über.</translation>
    </message>
    <message>
        <source>state</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>The name of the new state.</source>
        <translation>Der Name des neuen Zustands.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Greeter</name>
    <message>
        <source>Waits for a face, says hello and waves: an example of a diagram.</source>
        <translation>Wartet auf ein Gesicht, grüßt und winkt: ein Beispiel für ein Diagramm.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>voice</source>
        <translation>Stimme</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>Die Stimme, die spricht; auch die Namen installierter Stimmen sind möglich.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Patrol%3a there &amp; back</name>
    <message>
        <source>Walks to and fro until it is stopped: an example of a loop.</source>
        <translation>Geht hin und her, bis die Box angehalten wird: ein Beispiel für eine Schleife.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>starten</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>Startet die Box.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>anhalten</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Hält die Box sofort an.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Kommt, wenn die Box fertig ist.</translation>
    </message>
    <message>
        <source>blocked</source>
        <translation>blockiert</translation>
    </message>
    <message>
        <source>Comes when something is in the way, with its distance in metres.</source>
        <translation>Kommt, wenn etwas im Weg ist, mit seinem Abstand in Metern.</translation>
    </message>
    <message>
        <source>distance</source>
        <translation>Strecke</translation>
    </message>
    <message>
        <source>How far it walks, in metres.</source>
        <translation>Wie weit gegangen wird, in Metern.</translation>
    </message>
</context>
</TS>
