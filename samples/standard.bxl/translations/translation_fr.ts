<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Library:/Motion/Posture/Stand up</name>
    <message>
        <source>Gets up from any posture and stands still.</source>
        <translation>Se lève depuis n’importe quelle posture et reste debout, immobile.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>vitesse</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Vitesse du mouvement, en pourcentage de la vitesse maximale.</translation>
    </message>
    <message>
        <source>tries</source>
        <translation>essais</translation>
    </message>
    <message>
        <source>How often it tries before it gives up.</source>
        <translation>Nombre d’essais avant d’abandonner.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Sit down</name>
    <message>
        <source>Sits down on the floor, slowly enough not to fall.</source>
        <translation>S’assoit par terre, assez lentement pour ne pas tomber.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>vitesse</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Vitesse du mouvement, en pourcentage de la vitesse maximale.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Crouch</name>
    <message>
        <source>Bends the knees and lowers the body, ready to get up again.</source>
        <translation>Plie les genoux et baisse le corps, prêt à se relever.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>depth</source>
        <translation>profondeur</translation>
    </message>
    <message>
        <source>How far the body goes down, in centimetres.</source>
        <translation>De combien le corps descend, en centimètres.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Go limp</name>
    <message>
        <source>Takes the power off some motors, so that they can be moved by hand.
The robot must sit or be held.</source>
        <translation>Coupe l’alimentation de certains moteurs pour qu’on puisse les bouger à la main.
Le robot doit être assis ou tenu.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>motors</source>
        <translation>moteurs</translation>
    </message>
    <message>
        <source>The group of motors.</source>
        <translation>Le groupe de moteurs.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Walk</name>
    <message>
        <source>Walks straight ahead, or backwards when the distance is negative.</source>
        <translation>Marche tout droit, ou à reculons si la distance est négative.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>blocked</source>
        <translation>bloqué</translation>
    </message>
    <message>
        <source>Comes when something is in the way, with its distance in metres.</source>
        <translation>Émis si un obstacle barre le chemin, avec sa distance en mètres.</translation>
    </message>
    <message>
        <source>distance</source>
        <translation>distance</translation>
    </message>
    <message>
        <source>How far it walks, in metres.</source>
        <translation>La distance à parcourir, en mètres.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>vitesse</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Vitesse du mouvement, en pourcentage de la vitesse maximale.</translation>
    </message>
    <message>
        <source>avoid obstacles</source>
        <translation>éviter les obstacles</translation>
    </message>
    <message>
        <source>Walks around what is in the way instead of stopping.</source>
        <translation>Contourne les obstacles au lieu de s’arrêter.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Turn</name>
    <message>
        <source>Turns on the spot.</source>
        <translation>Tourne sur place.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>angle</source>
        <translation>angle</translation>
    </message>
    <message>
        <source>How far it turns, in degrees; positive is to the left.</source>
        <translation>L’angle de rotation, en degrés&#xa0;; positif vers la gauche.</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>vitesse</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>Vitesse du mouvement, en pourcentage de la vitesse maximale.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Go to%3a x, y</name>
    <message>
        <source>Walks to a place on the map and looks into the given direction there.</source>
        <translation>Marche jusqu’à un endroit de la carte et s’y oriente dans la direction donnée.</translation>
    </message>
    <message>
        <source>place</source>
        <translation>lieu</translation>
    </message>
    <message>
        <source>Starts walking to this place: x and y in metres, direction in degrees.</source>
        <translation>Se met en marche vers ce lieu&#xa0;: x et y en mètres, direction en degrés.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>échec</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Émis en cas d’échec, avec la raison.</translation>
    </message>
    <message>
        <source>map</source>
        <translation>carte</translation>
    </message>
    <message>
        <source>The file with the map of the room.</source>
        <translation>Le fichier contenant la carte de la pièce.</translation>
    </message>
    <message>
        <source>tolerance</source>
        <translation>tolérance</translation>
    </message>
    <message>
        <source>How near is near enough, in metres.</source>
        <translation>À quelle distance le but est considéré comme atteint, en mètres.</translation>
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
<context>
    <name>Library:/Motion/Gestures/Wave</name>
    <message>
        <source>Raises an arm and waves hello or goodbye.</source>
        <translation>Lève un bras et fait signe pour dire bonjour ou au revoir.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>side</source>
        <translation>côté</translation>
    </message>
    <message>
        <source>The arm that is used.</source>
        <translation>Le bras utilisé.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Nod</name>
    <message>
        <source>Nods the head, which most people take for a yes.</source>
        <translation>Hoche la tête, ce que la plupart des gens comprennent comme un oui.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>nombre de fois</translation>
    </message>
    <message>
        <source>How often the movement is repeated.</source>
        <translation>Nombre de répétitions du mouvement.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Shake head</name>
    <message>
        <source>Shakes the head, which most people take for a no.</source>
        <translation>Secoue la tête, ce que la plupart des gens comprennent comme un non.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>nombre de fois</translation>
    </message>
    <message>
        <source>How often the movement is repeated.</source>
        <translation>Nombre de répétitions du mouvement.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Bow</name>
    <message>
        <source>Bows politely and comes up again.</source>
        <translation>S’incline poliment puis se redresse.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>angle</source>
        <translation>angle</translation>
    </message>
    <message>
        <source>How deep it bows, in degrees.</source>
        <translation>L’inclinaison de la révérence, en degrés.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Point at</name>
    <message>
        <source>Stretches an arm out towards a point in the room.</source>
        <translation>Tend un bras vers un point de la pièce.</translation>
    </message>
    <message>
        <source>point</source>
        <translation>point</translation>
    </message>
    <message>
        <source>The point: x, y and z in metres from the robot&apos;s middle.</source>
        <translation>Le point&#xa0;: x, y et z en mètres depuis le centre du robot.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>échec</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Émis en cas d’échec, avec la raison.</translation>
    </message>
    <message>
        <source>side</source>
        <translation>côté</translation>
    </message>
    <message>
        <source>The arm that is used.</source>
        <translation>Le bras utilisé.</translation>
    </message>
    <message>
        <source>look at it too</source>
        <translation>regarder aussi</translation>
    </message>
    <message>
        <source>Turns the head towards the point as well.</source>
        <translation>Tourne aussi la tête vers le point.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Olé!</name>
    <message>
        <source>Stamps, throws both arms up and calls out.</source>
        <translation>Tape du pied, lance les deux bras en l’air et s’exclame.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Battements par minute.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Slow waltz</name>
    <message>
        <source>Sways from foot to foot in three-four time.</source>
        <translation>Se balance d’un pied sur l’autre sur une mesure à trois temps.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Battements par minute.</translation>
    </message>
    <message>
        <source>melody</source>
        <translation>mélodie</translation>
    </message>
    <message>
        <source>The file with the notes.</source>
        <translation>Le fichier contenant les notes.</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Left %2f right</name>
    <message>
        <source>Steps to the left and to the right, clapping in between.</source>
        <translation>Fait un pas à gauche puis à droite, en tapant des mains entre les deux.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Battements par minute.</translation>
    </message>
    <message>
        <source>rounds</source>
        <translation>tours</translation>
    </message>
    <message>
        <source>How often the whole dance is danced.</source>
        <translation>Combien de fois toute la danse est répétée.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Say</name>
    <message>
        <source>Says a text and comes to its end when the last word is spoken.</source>
        <translation>Prononce un texte et se termine au dernier mot.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>texte</translation>
    </message>
    <message>
        <source>Says this text at once.</source>
        <translation>Prononce ce texte immédiatement.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>word</source>
        <translation>mot</translation>
    </message>
    <message>
        <source>Each word, when its turn comes.</source>
        <translation>Chaque mot, au moment où il est prononcé.</translation>
    </message>
    <message>
        <source>voice</source>
        <translation>voix</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>La voix utilisée&#xa0;; le nom de toute voix installée convient aussi.</translation>
    </message>
    <message>
        <source>pitch</source>
        <translation>hauteur</translation>
    </message>
    <message>
        <source>How high the voice is; 1 is its natural pitch.</source>
        <translation>La hauteur de la voix&#xa0;; 1 est sa hauteur naturelle.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Say ..%2e</name>
    <message>
        <source>Says one of several sentences, seldom the same one twice in a row.</source>
        <translation>Dit une phrase parmi plusieurs, rarement la même deux fois de suite.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>sentences</source>
        <translation>phrases</translation>
    </message>
    <message>
        <source>The file with the sentences, one in each line.</source>
        <translation>Le fichier contenant les phrases, une par ligne.</translation>
    </message>
    <message>
        <source>voice</source>
        <translation>voix</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>La voix utilisée&#xa0;; le nom de toute voix installée convient aussi.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Tell a story</name>
    <message>
        <source>Tells a short story with gestures.</source>
        <translation>Raconte une courte histoire, gestes à l’appui.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>page</source>
        <translation>page</translation>
    </message>
    <message>
        <source>The number of the page that begins.</source>
        <translation>Le numéro de la page qui commence.</translation>
    </message>
    <message>
        <source>story</source>
        <translation>histoire</translation>
    </message>
    <message>
        <source>The story that is told.</source>
        <translation>L’histoire racontée.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Volume</name>
    <message>
        <source>Makes the voice and all sounds louder or softer.</source>
        <translation>Augmente ou baisse le volume de la voix et de tous les sons.</translation>
    </message>
    <message>
        <source>level</source>
        <translation>niveau</translation>
    </message>
    <message>
        <source>Sets the volume, from 0 (silent) to 100.</source>
        <translation>Règle le volume, de 0 (muet) à 100.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>limite</translation>
    </message>
    <message>
        <source>It never becomes louder than this.</source>
        <translation>Le volume ne dépasse jamais cette valeur.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Choose a language</name>
    <message>
        <source>Switches speaking and listening to another language.</source>
        <translation>Change la langue parlée et comprise par le robot.</translation>
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
    <message>
        <source>failed</source>
        <translation>échec</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Émis en cas d’échec, avec la raison.</translation>
    </message>
    <message>
        <source>language</source>
        <translation>langue</translation>
    </message>
    <message>
        <source>The language&apos;s code.</source>
        <translation>Le code de la langue.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Yes or no%3f</name>
    <message>
        <source>Asks a question and listens for a yes or a no.</source>
        <translation>Pose une question et attend un oui ou un non.</translation>
    </message>
    <message>
        <source>question</source>
        <translation>question</translation>
    </message>
    <message>
        <source>Asks this question.</source>
        <translation>Pose cette question.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>oui</translation>
    </message>
    <message>
        <source>The answer was yes.</source>
        <translation>La réponse était oui.</translation>
    </message>
    <message>
        <source>no</source>
        <translation>non</translation>
    </message>
    <message>
        <source>The answer was no.</source>
        <translation>La réponse était non.</translation>
    </message>
    <message>
        <source>silence</source>
        <translation>silence</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation>Émis si personne ne répond à temps.</translation>
    </message>
    <message>
        <source>patience</source>
        <translation>patience</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation>Le temps d’attente d’une réponse, en secondes.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Ask%3a what is your name%3f</name>
    <message>
        <source>Asks for a name, and asks again to be sure.</source>
        <translation>Demande un nom, puis demande confirmation.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>nom</translation>
    </message>
    <message>
        <source>The name that was given.</source>
        <translation>Le nom donné.</translation>
    </message>
    <message>
        <source>silence</source>
        <translation>silence</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation>Émis si personne ne répond à temps.</translation>
    </message>
    <message>
        <source>patience</source>
        <translation>patience</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation>Le temps d’attente d’une réponse, en secondes.</translation>
    </message>
    <message>
        <source>polite</source>
        <translation>poli</translation>
    </message>
    <message>
        <source>Speaks to people formally, where the language has such a form.</source>
        <translation>Vouvoie les gens, si la langue le permet.</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Listen for words</name>
    <message>
        <source>Listens until it hears one of some words.</source>
        <translation>Écoute jusqu’à entendre l’un des mots donnés.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>heard</source>
        <translation>entendu</translation>
    </message>
    <message>
        <source>What was understood.</source>
        <translation>Ce qui a été compris.</translation>
    </message>
    <message>
        <source>silence</source>
        <translation>silence</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation>Émis si personne ne répond à temps.</translation>
    </message>
    <message>
        <source>words</source>
        <translation>mots</translation>
    </message>
    <message>
        <source>The words, with commas between them.</source>
        <translation>Les mots, séparés par des virgules.</translation>
    </message>
    <message>
        <source>patience</source>
        <translation>patience</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation>Le temps d’attente d’une réponse, en secondes.</translation>
    </message>
    <message>
        <source>confidence</source>
        <translation>confiance</translation>
    </message>
    <message>
        <source>How sure it must be, from 0 to 1.</source>
        <translation>Le degré de certitude exigé, de 0 à 1.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Take a picture</name>
    <message>
        <source>Takes a picture and keeps it as a file.</source>
        <translation>Prend une photo et l’enregistre dans un fichier.</translation>
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
        <source>picture</source>
        <translation>image</translation>
    </message>
    <message>
        <source>The path of the file.</source>
        <translation>Le chemin du fichier.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>échec</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>Émis en cas d’échec, avec la raison.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>caméra</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>La caméra utilisée.</translation>
    </message>
    <message>
        <source>width</source>
        <translation>largeur</translation>
    </message>
    <message>
        <source>How wide the picture is, in pixels.</source>
        <translation>La largeur de l’image, en pixels.</translation>
    </message>
    <message>
        <source>countdown</source>
        <translation>compte à rebours</translation>
    </message>
    <message>
        <source>Counts down aloud before the picture is taken.</source>
        <translation>Compte à rebours à voix haute avant la prise de vue.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Find faces</name>
    <message>
        <source>Tells how many faces there are, and where.</source>
        <translation>Indique combien de visages sont visibles, et où.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>count</source>
        <translation>nombre</translation>
    </message>
    <message>
        <source>How many faces are seen, whenever that changes.</source>
        <translation>Le nombre de visages visibles, à chaque changement.</translation>
    </message>
    <message>
        <source>nearest</source>
        <translation>le plus proche</translation>
    </message>
    <message>
        <source>Where the nearest face is: angles to the left and upwards, in degrees.</source>
        <translation>Où se trouve le visage le plus proche&#xa0;: angles vers la gauche et vers le haut, en degrés.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>caméra</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>La caméra utilisée.</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>fréquence</translation>
    </message>
    <message>
        <source>How often it looks, per second.</source>
        <translation>Le nombre d’images analysées par seconde.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Who is it%3f</name>
    <message>
        <source>Recognises people that the robot has met before.</source>
        <translation>Reconnaît les personnes que le robot a déjà rencontrées.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>nom</translation>
    </message>
    <message>
        <source>The name of the person.</source>
        <translation>Le nom de la personne.</translation>
    </message>
    <message>
        <source>stranger</source>
        <translation>inconnu</translation>
    </message>
    <message>
        <source>Comes for a face that is not known.</source>
        <translation>Émis pour un visage inconnu.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>caméra</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>La caméra utilisée.</translation>
    </message>
    <message>
        <source>learn</source>
        <translation>apprendre</translation>
    </message>
    <message>
        <source>Remembers strangers, to recognise them the next time.</source>
        <translation>Mémorise les inconnus pour les reconnaître la fois suivante.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Follow a colour</name>
    <message>
        <source>Keeps the head turned to the biggest patch of a colour.</source>
        <translation>Garde la tête tournée vers la plus grande tache d’une couleur.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>lost</source>
        <translation>perdu</translation>
    </message>
    <message>
        <source>Comes when the colour is no longer to be seen.</source>
        <translation>Émis lorsque la couleur n’est plus visible.</translation>
    </message>
    <message>
        <source>colour</source>
        <translation>couleur</translation>
    </message>
    <message>
        <source>A name from the table of colours, or #rrggbb.</source>
        <translation>Un nom de la table des couleurs, ou #rrggbb.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>caméra</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>La caméra utilisée.</translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Bright or dark%3f</name>
    <message>
        <source>Tells whether there is light enough to see.</source>
        <translation>Indique s’il y a assez de lumière pour voir.</translation>
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
        <source>bright</source>
        <translation>clair</translation>
    </message>
    <message>
        <source>There is light enough.</source>
        <translation>Il y a assez de lumière.</translation>
    </message>
    <message>
        <source>dark</source>
        <translation>sombre</translation>
    </message>
    <message>
        <source>It is too dark.</source>
        <translation>Il fait trop sombre.</translation>
    </message>
    <message>
        <source>threshold</source>
        <translation>seuil</translation>
    </message>
    <message>
        <source>The brightness between the two, from 0 to 255.</source>
        <translation>La luminosité qui sépare les deux, de 0 à 255.</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>caméra</translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation>La caméra utilisée.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Battery %3c 20 %25</name>
    <message>
        <source>Warns when the battery runs low.</source>
        <translation>Avertit lorsque la batterie devient faible.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Commence la surveillance.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Arrête la surveillance.</translation>
    </message>
    <message>
        <source>low</source>
        <translation>faible</translation>
    </message>
    <message>
        <source>The charge fell below the limit; what is left, in percent.</source>
        <translation>La charge est passée sous la limite&#xa0;; ce qu’il en reste, en pourcentage.</translation>
    </message>
    <message>
        <source>charging</source>
        <translation>en charge</translation>
    </message>
    <message>
        <source>The charger was plugged in.</source>
        <translation>Le chargeur a été branché.</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>limite</translation>
    </message>
    <message>
        <source>The charge at which it warns, in percent.</source>
        <translation>La charge à partir de laquelle il avertit, en pourcentage.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Temperature %3e limit</name>
    <message>
        <source>Warns when a motor becomes too hot.</source>
        <translation>Avertit lorsqu’un moteur devient trop chaud.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Commence la surveillance.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Arrête la surveillance.</translation>
    </message>
    <message>
        <source>hot</source>
        <translation>chaud</translation>
    </message>
    <message>
        <source>The name of the motor.</source>
        <translation>Le nom du moteur.</translation>
    </message>
    <message>
        <source>cool again</source>
        <translation>refroidi</translation>
    </message>
    <message>
        <source>All motors are below the limit again.</source>
        <translation>Tous les moteurs sont repassés sous la limite.</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>limite</translation>
    </message>
    <message>
        <source>The temperature at which it warns, in degrees Celsius.</source>
        <translation>La température à partir de laquelle il avertit, en degrés Celsius.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Distance ahead</name>
    <message>
        <source>Measures how far the next thing in front of the robot is.</source>
        <translation>Mesure la distance du premier objet devant le robot.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Commence la surveillance.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Arrête la surveillance.</translation>
    </message>
    <message>
        <source>metres</source>
        <translation>mètres</translation>
    </message>
    <message>
        <source>The distance, with each measurement.</source>
        <translation>La distance, à chaque mesure.</translation>
    </message>
    <message>
        <source>too near</source>
        <translation>trop près</translation>
    </message>
    <message>
        <source>Something came nearer than allowed.</source>
        <translation>Quelque chose s’est approché plus que permis.</translation>
    </message>
    <message>
        <source>minimum</source>
        <translation>minimum</translation>
    </message>
    <message>
        <source>What is nearer than this, in metres, is too near.</source>
        <translation>Ce qui est plus proche que cette distance, en mètres, est trop près.</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>fréquence</translation>
    </message>
    <message>
        <source>How often it measures, per second.</source>
        <translation>Le nombre de mesures par seconde.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Where is that sound%3f</name>
    <message>
        <source>Tells from which direction a loud sound came.</source>
        <translation>Indique de quelle direction vient un bruit fort.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Commence la surveillance.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Arrête la surveillance.</translation>
    </message>
    <message>
        <source>direction</source>
        <translation>direction</translation>
    </message>
    <message>
        <source>The direction in degrees; positive is to the left.</source>
        <translation>La direction en degrés&#xa0;; positive vers la gauche.</translation>
    </message>
    <message>
        <source>sensitivity</source>
        <translation>sensibilité</translation>
    </message>
    <message>
        <source>How easily it hears something, in percent.</source>
        <translation>La facilité à percevoir un son, en pourcentage.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Fallen over%3f</name>
    <message>
        <source>Notices when the robot has fallen, and onto which side.</source>
        <translation>Détecte une chute du robot, et de quel côté.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Commence la surveillance.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Arrête la surveillance.</translation>
    </message>
    <message>
        <source>fallen</source>
        <translation>tombé</translation>
    </message>
    <message>
        <source>It lies on this side: front, back, left or right.</source>
        <translation>Il est tombé de ce côté&#xa0;: front, back, left ou right.</translation>
    </message>
    <message>
        <source>upright</source>
        <translation>debout</translation>
    </message>
    <message>
        <source>It stands again.</source>
        <translation>Il est de nouveau debout.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Touch/Head stroked</name>
    <message>
        <source>Notices a hand on the head, and which way it moves.</source>
        <translation>Détecte une main sur la tête et le sens de son mouvement.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Commence la surveillance.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Arrête la surveillance.</translation>
    </message>
    <message>
        <source>touched</source>
        <translation>touchée</translation>
    </message>
    <message>
        <source>A part of the head was touched: front, middle or back.</source>
        <translation>Une partie de la tête a été touchée&#xa0;: front, middle ou back.</translation>
    </message>
    <message>
        <source>stroked</source>
        <translation>caressée</translation>
    </message>
    <message>
        <source>The hand moved over the whole head.</source>
        <translation>La main a parcouru toute la tête.</translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Touch/Hand held</name>
    <message>
        <source>Notices when someone takes the robot by the hand.</source>
        <translation>Détecte quand quelqu’un prend le robot par la main.</translation>
    </message>
    <message>
        <source>start</source>
        <translation>démarrer</translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation>Commence la surveillance.</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation>Arrête la surveillance.</translation>
    </message>
    <message>
        <source>taken</source>
        <translation>prise</translation>
    </message>
    <message>
        <source>The hand was taken.</source>
        <translation>La main a été prise.</translation>
    </message>
    <message>
        <source>let go</source>
        <translation>lâchée</translation>
    </message>
    <message>
        <source>The hand was let go.</source>
        <translation>La main a été lâchée.</translation>
    </message>
    <message>
        <source>side</source>
        <translation>côté</translation>
    </message>
    <message>
        <source>The hand that is watched.</source>
        <translation>La main surveillée.</translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Eye colour</name>
    <message>
        <source>Gives the lights in the eyes another colour.</source>
        <translation>Change la couleur des lumières des yeux.</translation>
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
    <message>
        <source>colour</source>
        <translation>couleur</translation>
    </message>
    <message>
        <source>A name of a colour, or #rrggbb.</source>
        <translation>Un nom de couleur, ou #rrggbb.</translation>
    </message>
    <message>
        <source>time</source>
        <translation>durée</translation>
    </message>
    <message>
        <source>How long the change takes, in seconds.</source>
        <translation>La durée du changement, en secondes.</translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Blink</name>
    <message>
        <source>Blinks with both eyes, as if it had just woken up.</source>
        <translation>Cligne des deux yeux, comme au réveil.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>nombre de fois</translation>
    </message>
    <message>
        <source>How often it blinks.</source>
        <translation>Le nombre de clignements.</translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Play a melody</name>
    <message>
        <source>Plays notes from a file.</source>
        <translation>Joue les notes d’un fichier.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>melody</source>
        <translation>mélodie</translation>
    </message>
    <message>
        <source>The file with the notes.</source>
        <translation>Le fichier contenant les notes.</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>tempo</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>Battements par minute.</translation>
    </message>
    <message>
        <source>instrument</source>
        <translation>instrument</translation>
    </message>
    <message>
        <source>What it sounds like.</source>
        <translation>La sonorité.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Both</name>
    <message>
        <source>True when both conditions are true.</source>
        <translation>Vrai lorsque les deux conditions sont vraies.</translation>
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
        <source>b</source>
        <translation>b</translation>
    </message>
    <message>
        <source>The second condition.</source>
        <translation>La deuxième condition.</translation>
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
    <name>Library:/Logic/Either %7c or</name>
    <message>
        <source>True when at least one condition is true.</source>
        <translation>Vrai lorsqu’au moins une condition est vraie.</translation>
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
        <source>b</source>
        <translation>b</translation>
    </message>
    <message>
        <source>The second condition.</source>
        <translation>La deuxième condition.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>résultat</translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation>Le résultat, à chaque changement d’une entrée.</translation>
    </message>
    <message>
        <source>exclusive</source>
        <translation>exclusif</translation>
    </message>
    <message>
        <source>False when both are true.</source>
        <translation>Faux lorsque les deux sont vraies.</translation>
    </message>
</context>
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
    <name>Library:/Logic/Compare</name>
    <message>
        <source>Compares two numbers.</source>
        <translation>Compare deux nombres.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>nombre</translation>
    </message>
    <message>
        <source>The number that is looked at.</source>
        <translation>Le nombre examiné.</translation>
    </message>
    <message>
        <source>less</source>
        <translation>inférieur</translation>
    </message>
    <message>
        <source>It is less than the other.</source>
        <translation>Il est inférieur à l’autre.</translation>
    </message>
    <message>
        <source>equal</source>
        <translation>égal</translation>
    </message>
    <message>
        <source>Both are equal.</source>
        <translation>Les deux sont égaux.</translation>
    </message>
    <message>
        <source>greater</source>
        <translation>supérieur</translation>
    </message>
    <message>
        <source>It is greater than the other.</source>
        <translation>Il est supérieur à l’autre.</translation>
    </message>
    <message>
        <source>other</source>
        <translation>autre</translation>
    </message>
    <message>
        <source>The number that it is compared with.</source>
        <translation>Le nombre de comparaison.</translation>
    </message>
    <message>
        <source>tolerance</source>
        <translation>tolérance</translation>
    </message>
    <message>
        <source>Numbers that differ by no more than this are equal.</source>
        <translation>Deux nombres dont l’écart ne dépasse pas cette valeur sont égaux.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Chance%3a 50 %25</name>
    <message>
        <source>Lets chance decide.</source>
        <translation>Laisse le hasard décider.</translation>
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
        <source>yes</source>
        <translation>oui</translation>
    </message>
    <message>
        <source>Chance said yes.</source>
        <translation>Le hasard a dit oui.</translation>
    </message>
    <message>
        <source>no</source>
        <translation>non</translation>
    </message>
    <message>
        <source>Chance said no.</source>
        <translation>Le hasard a dit non.</translation>
    </message>
    <message>
        <source>chance</source>
        <translation>probabilité</translation>
    </message>
    <message>
        <source>How likely a yes is, in percent.</source>
        <translation>La probabilité d’un oui, en pourcentage.</translation>
    </message>
</context>
<context>
    <name>Library:/Logic/On %2f off</name>
    <message>
        <source>Changes between on and off with each event.</source>
        <translation>Bascule entre marche et arrêt à chaque événement.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>événement</translation>
    </message>
    <message>
        <source>Changes to the other state.</source>
        <translation>Passe à l’autre état.</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>réinitialiser</translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation>Oublie ce qui précède.</translation>
    </message>
    <message>
        <source>on</source>
        <translation>marche</translation>
    </message>
    <message>
        <source>It is on now.</source>
        <translation>C’est maintenant en marche.</translation>
    </message>
    <message>
        <source>off</source>
        <translation>arrêt</translation>
    </message>
    <message>
        <source>It is off now.</source>
        <translation>C’est maintenant à l’arrêt.</translation>
    </message>
    <message>
        <source>on at first</source>
        <translation>marche au début</translation>
    </message>
    <message>
        <source>The state in the beginning.</source>
        <translation>L’état initial.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Wait</name>
    <message>
        <source>Waits a while and then goes on.</source>
        <translation>Attend un moment, puis continue.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>secondes</translation>
    </message>
    <message>
        <source>How long, in seconds.</source>
        <translation>La durée, en secondes.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Wait for it%2e</name>
    <message>
        <source>Waits until an event has come a number of times.</source>
        <translation>Attend qu’un événement se soit produit un certain nombre de fois.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>événement</translation>
    </message>
    <message>
        <source>Counts one more.</source>
        <translation>Compte un de plus.</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>réinitialiser</translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation>Oublie ce qui précède.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>manquants</translation>
    </message>
    <message>
        <source>How many are still to come.</source>
        <translation>Combien doivent encore se produire.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>nombre de fois</translation>
    </message>
    <message>
        <source>How many events it takes.</source>
        <translation>Le nombre d’événements nécessaires.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Repeat</name>
    <message>
        <source>Runs the boxes inside it again and again.</source>
        <translation>Exécute plusieurs fois les boîtes qu’elle contient.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>round done</source>
        <translation>tour terminé</translation>
    </message>
    <message>
        <source>Linked from inside: the round has come to its end.</source>
        <translation>Relié de l’intérieur&#xa0;: le tour est terminé.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>round</source>
        <translation>tour</translation>
    </message>
    <message>
        <source>Links to what is inside: a round begins, with its number.</source>
        <translation>Vers l’intérieur&#xa0;: un tour commence, avec son numéro.</translation>
    </message>
    <message>
        <source>times</source>
        <translation>nombre de fois</translation>
    </message>
    <message>
        <source>How many rounds; 0 means without end.</source>
        <translation>Le nombre de tours&#xa0;; 0 signifie sans fin.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/If %2f else</name>
    <message>
        <source>Sends a value one way or the other.</source>
        <translation>Envoie une valeur d’un côté ou de l’autre.</translation>
    </message>
    <message>
        <source>condition</source>
        <translation>condition</translation>
    </message>
    <message>
        <source>Decides about the values that come afterwards.</source>
        <translation>Décide pour les valeurs suivantes.</translation>
    </message>
    <message>
        <source>value</source>
        <translation>valeur</translation>
    </message>
    <message>
        <source>The value that is sent on.</source>
        <translation>La valeur transmise.</translation>
    </message>
    <message>
        <source>then</source>
        <translation>alors</translation>
    </message>
    <message>
        <source>The value, when the condition is true.</source>
        <translation>La valeur, si la condition est vraie.</translation>
    </message>
    <message>
        <source>else</source>
        <translation>sinon</translation>
    </message>
    <message>
        <source>The value, when the condition is false.</source>
        <translation>La valeur, si la condition est fausse.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Which one%3f</name>
    <message>
        <source>Chooses an output by the text that comes in.</source>
        <translation>Choisit une sortie selon le texte reçu.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>texte</translation>
    </message>
    <message>
        <source>The text that decides.</source>
        <translation>Le texte qui décide.</translation>
    </message>
    <message>
        <source>first</source>
        <translation>premier</translation>
    </message>
    <message>
        <source>The text is the first one.</source>
        <translation>Le texte est le premier.</translation>
    </message>
    <message>
        <source>second</source>
        <translation>deuxième</translation>
    </message>
    <message>
        <source>The text is the second one.</source>
        <translation>Le texte est le deuxième.</translation>
    </message>
    <message>
        <source>third</source>
        <translation>troisième</translation>
    </message>
    <message>
        <source>The text is the third one.</source>
        <translation>Le texte est le troisième.</translation>
    </message>
    <message>
        <source>none of them</source>
        <translation>aucun</translation>
    </message>
    <message>
        <source>The text is another one.</source>
        <translation>Le texte est un autre.</translation>
    </message>
    <message>
        <source>texts</source>
        <translation>textes</translation>
    </message>
    <message>
        <source>The three texts, with commas between them.</source>
        <translation>Les trois textes, séparés par des virgules.</translation>
    </message>
    <message>
        <source>exact</source>
        <translation>exact</translation>
    </message>
    <message>
        <source>Capital letters and spaces matter.</source>
        <translation>Les majuscules et les espaces comptent.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Only once</name>
    <message>
        <source>Lets the first event through and no other.</source>
        <translation>Laisse passer le premier événement et aucun autre.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>événement</translation>
    </message>
    <message>
        <source>Passes through the first time.</source>
        <translation>Passe la première fois.</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>réinitialiser</translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation>Oublie ce qui précède.</translation>
    </message>
    <message>
        <source>once</source>
        <translation>une fois</translation>
    </message>
    <message>
        <source>The first event.</source>
        <translation>Le premier événement.</translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Time limit</name>
    <message>
        <source>Complains when something takes too long.</source>
        <translation>Signale ce qui prend trop de temps.</translation>
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
        <source>in time</source>
        <translation>à temps</translation>
    </message>
    <message>
        <source>It is finished; the clock is stopped.</source>
        <translation>C’est terminé&#xa0;; le chronomètre s’arrête.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>too late</source>
        <translation>trop tard</translation>
    </message>
    <message>
        <source>The time is over.</source>
        <translation>Le temps est écoulé.</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>secondes</translation>
    </message>
    <message>
        <source>How long, in seconds.</source>
        <translation>La durée, en secondes.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Remember</name>
    <message>
        <source>Keeps a value under a name, even when the robot is switched off.</source>
        <translation>Conserve une valeur sous un nom, même robot éteint.</translation>
    </message>
    <message>
        <source>value</source>
        <translation>valeur</translation>
    </message>
    <message>
        <source>The value to keep.</source>
        <translation>La valeur à conserver.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>key</source>
        <translation>clé</translation>
    </message>
    <message>
        <source>The name under which the value is kept.</source>
        <translation>Le nom sous lequel la valeur est conservée.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Recall</name>
    <message>
        <source>Gives back a value that was kept.</source>
        <translation>Restitue une valeur conservée.</translation>
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
        <source>value</source>
        <translation>valeur</translation>
    </message>
    <message>
        <source>The value that was kept.</source>
        <translation>La valeur conservée.</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
    <message>
        <source>There is no value of that name.</source>
        <translation>Aucune valeur ne porte ce nom.</translation>
    </message>
    <message>
        <source>key</source>
        <translation>clé</translation>
    </message>
    <message>
        <source>The name under which the value is kept.</source>
        <translation>Le nom sous lequel la valeur est conservée.</translation>
    </message>
    <message>
        <source>otherwise</source>
        <translation>à défaut</translation>
    </message>
    <message>
        <source>What is sent when there is none; nothing when this is empty.</source>
        <translation>Ce qui est envoyé s’il n’y en a pas&#xa0;; rien si ce champ est vide.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Write to the log</name>
    <message>
        <source>Writes a line into the robot&apos;s log.</source>
        <translation>Écrit une ligne dans le journal du robot.</translation>
    </message>
    <message>
        <source>value</source>
        <translation>valeur</translation>
    </message>
    <message>
        <source>What is written.</source>
        <translation>Ce qui est écrit.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>level</source>
        <translation>niveau</translation>
    </message>
    <message>
        <source>How important it is.</source>
        <translation>L’importance du message.</translation>
    </message>
    <message>
        <source>begins with</source>
        <translation>commence par</translation>
    </message>
    <message>
        <source>A text in front of what is written.</source>
        <translation>Un texte placé avant ce qui est écrit.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Join texts</name>
    <message>
        <source>Puts two texts together.</source>
        <translation>Assemble deux textes.</translation>
    </message>
    <message>
        <source>front</source>
        <translation>début</translation>
    </message>
    <message>
        <source>The text in front.</source>
        <translation>Le texte de début.</translation>
    </message>
    <message>
        <source>back</source>
        <translation>fin</translation>
    </message>
    <message>
        <source>The text behind; both are then put together.</source>
        <translation>Le texte de fin&#xa0;; les deux sont alors assemblés.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>texte</translation>
    </message>
    <message>
        <source>The new text.</source>
        <translation>Le nouveau texte.</translation>
    </message>
    <message>
        <source>between</source>
        <translation>entre les deux</translation>
    </message>
    <message>
        <source>What comes between the two.</source>
        <translation>Ce qui les sépare.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Split a text</name>
    <message>
        <source>Cuts a text into its parts.</source>
        <translation>Découpe un texte en morceaux.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>texte</translation>
    </message>
    <message>
        <source>The text that is cut.</source>
        <translation>Le texte à découper.</translation>
    </message>
    <message>
        <source>part</source>
        <translation>morceau</translation>
    </message>
    <message>
        <source>Each part, one after the other.</source>
        <translation>Chaque morceau, l’un après l’autre.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>at</source>
        <translation>séparateur</translation>
    </message>
    <message>
        <source>Where it is cut.</source>
        <translation>Où le texte est coupé.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Replace %2a and %3f</name>
    <message>
        <source>Replaces what matches a pattern, in which * stands for any text and ? for any one character.</source>
        <translation>Remplace ce qui correspond à un motif, où * représente un texte quelconque et&#xa0;? un caractère quelconque.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>texte</translation>
    </message>
    <message>
        <source>The text that is changed.</source>
        <translation>Le texte à modifier.</translation>
    </message>
    <message>
        <source>The new text.</source>
        <translation>Le nouveau texte.</translation>
    </message>
    <message>
        <source>pattern</source>
        <translation>motif</translation>
    </message>
    <message>
        <source>What is looked for.</source>
        <translation>Ce qui est recherché.</translation>
    </message>
    <message>
        <source>by</source>
        <translation>par</translation>
    </message>
    <message>
        <source>What comes in its place.</source>
        <translation>Ce qui le remplace.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Calculate%3a + - %2a %2f</name>
    <message>
        <source>Calculates with two numbers.</source>
        <translation>Effectue un calcul avec deux nombres.</translation>
    </message>
    <message>
        <source>x</source>
        <translation>x</translation>
    </message>
    <message>
        <source>The first number.</source>
        <translation>Le premier nombre.</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>The second number; the calculation is then done.</source>
        <translation>Le deuxième nombre&#xa0;; le calcul est alors effectué.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>résultat</translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation>Le résultat du calcul.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>échec</translation>
    </message>
    <message>
        <source>The calculation has no result.</source>
        <translation>Le calcul n’a pas de résultat.</translation>
    </message>
    <message>
        <source>operation</source>
        <translation>opération</translation>
    </message>
    <message>
        <source>What is done with them.</source>
        <translation>L’opération effectuée.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Round</name>
    <message>
        <source>Rounds a number.</source>
        <translation>Arrondit un nombre.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>nombre</translation>
    </message>
    <message>
        <source>The number that is rounded.</source>
        <translation>Le nombre à arrondir.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>résultat</translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation>Le résultat du calcul.</translation>
    </message>
    <message>
        <source>digits</source>
        <translation>décimales</translation>
    </message>
    <message>
        <source>How many digits stay after the point.</source>
        <translation>Le nombre de décimales conservées.</translation>
    </message>
    <message>
        <source>direction</source>
        <translation>direction</translation>
    </message>
    <message>
        <source>Where a number goes that lies between.</source>
        <translation>Le sens de l’arrondi.</translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Map a range</name>
    <message>
        <source>Turns a number of one range into the matching one of another.</source>
        <translation>Convertit un nombre d’un intervalle en son équivalent dans un autre.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>nombre</translation>
    </message>
    <message>
        <source>The number in the first range.</source>
        <translation>Le nombre du premier intervalle.</translation>
    </message>
    <message>
        <source>result</source>
        <translation>résultat</translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation>Le résultat du calcul.</translation>
    </message>
    <message>
        <source>from</source>
        <translation>de</translation>
    </message>
    <message>
        <source>The lower end of the first range.</source>
        <translation>La borne inférieure du premier intervalle.</translation>
    </message>
    <message>
        <source>to</source>
        <translation>jusqu’à</translation>
    </message>
    <message>
        <source>The upper end of the first range.</source>
        <translation>La borne supérieure du premier intervalle.</translation>
    </message>
    <message>
        <source>new from</source>
        <translation>nouveau de</translation>
    </message>
    <message>
        <source>The lower end of the second range.</source>
        <translation>La borne inférieure du deuxième intervalle.</translation>
    </message>
    <message>
        <source>new to</source>
        <translation>nouveau jusqu’à</translation>
    </message>
    <message>
        <source>The upper end of the second range.</source>
        <translation>La borne supérieure du deuxième intervalle.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Empty box</name>
    <message>
        <source>A box with nothing but a start and an end, to write a script for.</source>
        <translation>Une boîte réduite à un début et une fin, dont le script reste à écrire.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
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
<context>
    <name>Library:/Templates/Empty diagram</name>
    <message>
        <source>A box with a diagram inside, to put other boxes into.</source>
        <translation>Une boîte contenant un diagramme, pour y placer d’autres boîtes.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
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
<context>
    <name>Library:/Templates/Empty timeline</name>
    <message>
        <source>A behaviour with an empty timeline, to put movements and boxes onto.</source>
        <translation>Un comportement dont la chronologie est vide, pour y placer mouvements et boîtes.</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>au chargement</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>Reçu une seule fois, au chargement du comportement.</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>au démarrage</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>Démarre le comportement à sa première image.</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>à l’arrêt</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>Arrête le comportement là où il en est.</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>à la fin</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>Émis lorsque la dernière image a été jouée.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Box with states</name>
    <message>
        <source>A script that remembers in which state it is: a start for boxes that wait for several things.</source>
        <translation>Un script qui retient son état&#xa0;: un point de départ pour les boîtes qui attendent plusieurs choses.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>event</source>
        <translation>événement</translation>
    </message>
    <message>
        <source>Goes on to the next state.</source>
        <translation>Passe à l’état suivant.</translation>
    </message>
    <message>
        <source>state</source>
        <translation>état</translation>
    </message>
    <message>
        <source>The name of the new state.</source>
        <translation>Le nom du nouvel état.</translation>
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
<context>
    <name>Library:/Templates/Greeter</name>
    <message>
        <source>Waits for a face, says hello and waves: an example of a diagram.</source>
        <translation>Attend un visage, dit bonjour et fait signe&#xa0;: un exemple de diagramme.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>voice</source>
        <translation>voix</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>La voix utilisée&#xa0;; le nom de toute voix installée convient aussi.</translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Patrol%3a there &amp; back</name>
    <message>
        <source>Walks to and fro until it is stopped: an example of a loop.</source>
        <translation>Va et vient jusqu’à ce qu’on l’arrête&#xa0;: un exemple de boucle.</translation>
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
        <source>stop</source>
        <translation>arrêter</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>Arrête la boîte immédiatement.</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>Émis lorsque la boîte a terminé.</translation>
    </message>
    <message>
        <source>blocked</source>
        <translation>bloqué</translation>
    </message>
    <message>
        <source>Comes when something is in the way, with its distance in metres.</source>
        <translation>Émis si un obstacle barre le chemin, avec sa distance en mètres.</translation>
    </message>
    <message>
        <source>distance</source>
        <translation>distance</translation>
    </message>
    <message>
        <source>How far it walks, in metres.</source>
        <translation>La distance à parcourir, en mètres.</translation>
    </message>
</context>
</TS>
