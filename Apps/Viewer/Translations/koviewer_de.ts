<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Commands</name>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Take back the last change of selection, visibility or locks</source>
        <translation>Letzte Änderung von Auswahl, Sichtbarkeit oder Sperren zurücknehmen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Do again what was taken back</source>
        <translation>Zurückgenommene Änderung wiederholen</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Hide the selected parts</source>
        <translation>Ausgewählte Teile ausblenden</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Einblenden</translation>
    </message>
    <message>
        <source>Show the selected parts again, and the groups that they are in</source>
        <translation>Ausgewählte Teile und ihre Gruppen wieder einblenden</translation>
    </message>
    <message>
        <source>Isolate</source>
        <translation>Isolieren</translation>
    </message>
    <message>
        <source>Hide everything but the selected parts</source>
        <translation>Alles außer den ausgewählten Teilen ausblenden</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>Alles einblenden</translation>
    </message>
    <message>
        <source>Show all hidden parts again</source>
        <translation>Alle ausgeblendeten Teile wieder einblenden</translation>
    </message>
    <message>
        <source>Lock or unlock</source>
        <translation>Sperren oder entsperren</translation>
    </message>
    <message>
        <source>Lock or unlock the selected parts</source>
        <translation>Ausgewählte Teile sperren oder entsperren</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Select all parts that are shown</source>
        <translation>Alle sichtbaren Teile auswählen</translation>
    </message>
    <message>
        <source>Select none</source>
        <translation>Nichts auswählen</translation>
    </message>
    <message>
        <source>Clear the selection</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message>
        <source>Invert selection</source>
        <translation>Auswahl umkehren</translation>
    </message>
    <message>
        <source>Select what is not selected, and nothing else</source>
        <translation>Auswählen, was nicht ausgewählt ist, und nur das</translation>
    </message>
    <message>
        <source>Select parent</source>
        <translation>Übergeordnete auswählen</translation>
    </message>
    <message>
        <source>Select the groups that the selected parts are in</source>
        <translation>Gruppen der ausgewählten Teile auswählen</translation>
    </message>
    <message>
        <source>Select children</source>
        <translation>Untergeordnete auswählen</translation>
    </message>
    <message>
        <source>Select the parts of the selected groups</source>
        <translation>Teile der ausgewählten Gruppen auswählen</translation>
    </message>
    <message>
        <source>New selection set</source>
        <translation>Neuer Auswahlsatz</translation>
    </message>
    <message>
        <source>Keep the selected parts as a named set</source>
        <translation>Ausgewählte Teile als benannten Satz aufbewahren</translation>
    </message>
    <message>
        <source>Highlight under pointer</source>
        <translation>Unter dem Zeiger hervorheben</translation>
    </message>
    <message>
        <source>Show in blue what a click or a rectangle would select</source>
        <translation>Blau zeigen, was ein Klick oder ein Rechteck auswählen würde</translation>
    </message>
    <message>
        <source>Rectangle selects visible parts only</source>
        <translation>Rechteck wählt nur sichtbare Teile</translation>
    </message>
    <message>
        <source>Let the rectangle leave out parts that are hidden behind others</source>
        <translation>Im Rechteck Teile auslassen, die andere verdecken</translation>
    </message>
    <message>
        <source>Find...</source>
        <translation>Suchen...</translation>
    </message>
    <message>
        <source>Find parts by name</source>
        <translation>Teile nach Namen suchen</translation>
    </message>
    <message>
        <source>Fit all</source>
        <translation>Alles einpassen</translation>
    </message>
    <message>
        <source>Fit the model into the view</source>
        <translation>Modell in die Ansicht einpassen</translation>
    </message>
    <message>
        <source>Fit selection</source>
        <translation>Auswahl einpassen</translation>
    </message>
    <message>
        <source>Fit the selected parts into the view</source>
        <translation>Ausgewählte Teile in die Ansicht einpassen</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorne</translation>
    </message>
    <message>
        <source>Look from the front</source>
        <translation>Von vorne ansehen</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Look from the right</source>
        <translation>Von rechts ansehen</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Look from above</source>
        <translation>Von oben ansehen</translation>
    </message>
    <message>
        <source>Isometric</source>
        <translation>Isometrisch</translation>
    </message>
    <message>
        <source>Look from above at an angle</source>
        <translation>Schräg von oben ansehen</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Hinten</translation>
    </message>
    <message>
        <source>Look from behind</source>
        <translation>Von hinten ansehen</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Look from the left</source>
        <translation>Von links ansehen</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Unten</translation>
    </message>
    <message>
        <source>Look from below</source>
        <translation>Von unten ansehen</translation>
    </message>
    <message>
        <source>Parallel projection</source>
        <translation>Parallelprojektion</translation>
    </message>
    <message>
        <source>Switch between parallel and perspective projection</source>
        <translation>Zwischen Parallel- und Zentralprojektion wechseln</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Enlarge what is in the middle of the view</source>
        <translation>Die Mitte der Ansicht vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Show more of what is around the middle of the view</source>
        <translation>Mehr vom Umfeld der Mitte zeigen</translation>
    </message>
    <message>
        <source>Wireframe selection</source>
        <translation>Auswahl als Drahtgitter</translation>
    </message>
    <message>
        <source>Switch between boxes and wireframe</source>
        <translation>Zwischen Quadern und Drahtgitter wechseln</translation>
    </message>
    <message>
        <source>Selection over everything</source>
        <translation>Auswahl über allem</translation>
    </message>
    <message>
        <source>Draw the selection over everything or in its place</source>
        <translation>Auswahl über allem oder an ihrem Ort zeichnen</translation>
    </message>
    <message>
        <source>Dark background</source>
        <translation>Dunkler Hintergrund</translation>
    </message>
    <message>
        <source>Switch between light and dark background</source>
        <translation>Zwischen hellem und dunklem Hintergrund wechseln</translation>
    </message>
    <message>
        <source>Turn left</source>
        <translation>Nach links drehen</translation>
    </message>
    <message>
        <source>Turn the model to the left</source>
        <translation>Modell nach links drehen</translation>
    </message>
    <message>
        <source>Turn right</source>
        <translation>Nach rechts drehen</translation>
    </message>
    <message>
        <source>Turn the model to the right</source>
        <translation>Modell nach rechts drehen</translation>
    </message>
    <message>
        <source>Turn up</source>
        <translation>Nach oben drehen</translation>
    </message>
    <message>
        <source>Turn the model upwards</source>
        <translation>Modell nach oben drehen</translation>
    </message>
    <message>
        <source>Turn down</source>
        <translation>Nach unten drehen</translation>
    </message>
    <message>
        <source>Turn the model downwards</source>
        <translation>Modell nach unten drehen</translation>
    </message>
    <message>
        <source>Move left</source>
        <translation>Nach links verschieben</translation>
    </message>
    <message>
        <source>Move the model to the left</source>
        <translation>Modell nach links verschieben</translation>
    </message>
    <message>
        <source>Move right</source>
        <translation>Nach rechts verschieben</translation>
    </message>
    <message>
        <source>Move the model to the right</source>
        <translation>Modell nach rechts verschieben</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben verschieben</translation>
    </message>
    <message>
        <source>Move the model upwards</source>
        <translation>Modell nach oben verschieben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten verschieben</translation>
    </message>
    <message>
        <source>Move the model downwards</source>
        <translation>Modell nach unten verschieben</translation>
    </message>
    <message>
        <source>Measure</source>
        <translation>Messen</translation>
    </message>
    <message>
        <source>Measure the distance between two points and the angle between their normals</source>
        <translation>Abstand zweier Punkte und Winkel zwischen ihren Normalen messen</translation>
    </message>
    <message>
        <source>Presenter mode</source>
        <translation>Präsentationsmodus</translation>
    </message>
    <message>
        <source>Fill the screen with the view and let keys alone</source>
        <translation>Bildschirm mit der Ansicht füllen und Tasten ruhen lassen</translation>
    </message>
    <message>
        <source>Inspector</source>
        <translation>Inspektor</translation>
    </message>
    <message>
        <source>Show what the interaction library does</source>
        <translation>Zeigen, was die Interaktionsbibliothek tut</translation>
    </message>
    <message>
        <source>Record input...</source>
        <translation>Eingaben aufzeichnen...</translation>
    </message>
    <message>
        <source>Write all input into a file that can be replayed</source>
        <translation>Alle Eingaben in eine Datei schreiben, die sich abspielen lässt</translation>
    </message>
    <message>
        <source>Shortcuts...</source>
        <translation>Tastenkürzel...</translation>
    </message>
    <message>
        <source>List and change the shortcuts</source>
        <translation>Tastenkürzel anzeigen und ändern</translation>
    </message>
    <message>
        <source>Copy measurement</source>
        <translation>Messergebnis kopieren</translation>
    </message>
    <message>
        <source>Copy what was measured to the clipboard</source>
        <translation>Messergebnis in die Zwischenablage kopieren</translation>
    </message>
</context>
<context>
    <name>InputBindings</name>
    <message>
        <source>Select the part under the pointer</source>
        <translation>Teil unter dem Zeiger auswählen</translation>
    </message>
    <message>
        <source>Add the part under the pointer or take it out</source>
        <translation>Teil unter dem Zeiger hinzufügen oder herausnehmen</translation>
    </message>
    <message>
        <source>Select what a rectangle encloses (to the right) or touches (to the left)</source>
        <translation>Auswählen, was ein Rechteck umschließt (nach rechts) oder berührt (nach links)</translation>
    </message>
    <message>
        <source>Add what a rectangle encloses (to the right) or touches (to the left)</source>
        <translation>Hinzufügen, was ein Rechteck umschließt (nach rechts) oder berührt (nach links)</translation>
    </message>
    <message>
        <source>Turn the view</source>
        <translation>Ansicht drehen</translation>
    </message>
    <message>
        <source>Move the view</source>
        <translation>Ansicht verschieben</translation>
    </message>
    <message>
        <source>Zoom the view</source>
        <translation>Ansicht zoomen</translation>
    </message>
    <message>
        <source>Leave the tool, or clear the selection</source>
        <translation>Werkzeug verlassen oder Auswahl aufheben</translation>
    </message>
    <message>
        <source>Turn the model to the left</source>
        <translation>Modell nach links drehen</translation>
    </message>
    <message>
        <source>Turn the model to the right</source>
        <translation>Modell nach rechts drehen</translation>
    </message>
    <message>
        <source>Turn the model upwards</source>
        <translation>Modell nach oben drehen</translation>
    </message>
    <message>
        <source>Turn the model downwards</source>
        <translation>Modell nach unten drehen</translation>
    </message>
    <message>
        <source>Fixed keys</source>
        <translation>Feste Tasten</translation>
    </message>
</context>
<context>
    <name>LengthFormat</name>
    <message>
        <source>%1 × %2 × %3</source>
        <comment>width, height and depth of a box</comment>
        <translation>%1 × %2 × %3</translation>
    </message>
    <message>
        <source>Millimetres (mm)</source>
        <translation>Millimeter (mm)</translation>
    </message>
    <message>
        <source>Inches (in)</source>
        <translation>Zoll (in)</translation>
    </message>
    <message>
        <source>Metres (m)</source>
        <translation>Meter (m)</translation>
    </message>
    <message>
        <source>%1 units</source>
        <comment>a length whose unit is not known</comment>
        <translation>%1 Einheiten</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 mm</translation>
    </message>
    <message>
        <source>%1 in</source>
        <comment>inches</comment>
        <translation>%1 in</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
</context>
<context>
    <name>MeasureTool</name>
    <message>
        <source>Distance: %1</source>
        <translation>Abstand: %1</translation>
    </message>
    <message>
        <source>Along x: %1</source>
        <translation>Entlang x: %1</translation>
    </message>
    <message>
        <source>Along y: %1</source>
        <translation>Entlang y: %1</translation>
    </message>
    <message>
        <source>Along z: %1</source>
        <translation>Entlang z: %1</translation>
    </message>
    <message>
        <source>Angle between the normals: %1</source>
        <translation>Winkel zwischen den Normalen: %1</translation>
    </message>
    <message>
        <source>Distance %1, click to begin anew</source>
        <translation>Abstand %1; Klicken beginnt von vorn</translation>
    </message>
    <message>
        <source>Click the second point, Escape takes the first one back</source>
        <translation>Zweiten Punkt anklicken; Esc nimmt den ersten zurück</translation>
    </message>
    <message>
        <source>Click two points to measure between them</source>
        <translation>Zwei Punkte anklicken, um zwischen ihnen zu messen</translation>
    </message>
    <message>
        <source>%1°</source>
        <comment>degrees</comment>
        <translation>%1°</translation>
    </message>
</context>
<context>
    <name>ModelReader</name>
    <message>
        <source>none of its meshes can be shown</source>
        <translation>keines der Netze lässt sich anzeigen</translation>
    </message>
    <message>
        <source>holds no meshes</source>
        <translation>enthält keine Netze</translation>
    </message>
    <message>
        <source>is damaged, or not of the format that its name says</source>
        <translation>ist beschädigt oder hat nicht das Format, das der Name nennt</translation>
    </message>
    <message>
        <source>unknown format</source>
        <translation>unbekanntes Format</translation>
    </message>
    <message>
        <source>refers to %1, which is not there</source>
        <translation>verweist auf %1, das es nicht gibt</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>lässt sich nicht lesen</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>lässt sich nicht lesen: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n of %1 meshes could not be read.</source>
        <translation>
            <numerusform>%n von %1 Netzen ließ sich nicht lesen.</numerusform>
            <numerusform>%n von %1 Netzen ließen sich nicht lesen.</numerusform>
        </translation>
    </message>
    <message>
        <source>The file %1 is missing.</source>
        <translation>Die Datei %1 fehlt.</translation>
    </message>
    <message>
        <source>The reader reported: %1</source>
        <translation>Meldung beim Lesen: %1</translation>
    </message>
    <message numerus="yes">
        <source>The reader reported %n problems, first: %1</source>
        <translation>
            <numerusform>%n Problem beim Lesen: %1</numerusform>
            <numerusform>%n Probleme beim Lesen, zuerst: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>no such file</source>
        <translation>keine solche Datei</translation>
    </message>
    <message>
        <source>is a directory</source>
        <translation>ist ein Verzeichnis</translation>
    </message>
    <message>
        <source>is not a regular file</source>
        <translation>ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <source>may not be read</source>
        <translation>darf nicht gelesen werden</translation>
    </message>
    <message numerus="yes">
        <source>%n faces could not be read.</source>
        <translation>
            <numerusform>%n Fläche ließ sich nicht lesen.</numerusform>
            <numerusform>%n Flächen ließen sich nicht lesen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n meshes are used but not in the file.</source>
        <translation>
            <numerusform>%n Netz wird verwendet, fehlt aber in der Datei.</numerusform>
            <numerusform>%n Netze werden verwendet, fehlen aber in der Datei.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RubberBand</name>
    <message>
        <source>Touched: %1</source>
        <translation>Berührt: %1</translation>
    </message>
    <message>
        <source>Enclosed: %1</source>
        <translation>Umschlossen: %1</translation>
    </message>
</context>
<context>
    <name>SelectionTool</name>
    <message>
        <source>Click selects a part, Ctrl+click adds it or takes it out, Shift+drag selects with a rectangle</source>
        <translation>Klicken wählt ein Teil aus, Strg+Klicken fügt es hinzu oder nimmt es heraus, Umschalt+Ziehen wählt mit einem Rechteck</translation>
    </message>
</context>
<context>
    <name>quon::viewer::InputBindings</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>quon::viewer::InspectorModel</name>
    <message>
        <source>Time (s)</source>
        <translation>Zeit (s)</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>Verb</source>
        <translation>Verb</translation>
    </message>
    <message>
        <source>Consumed by</source>
        <translation>Verbraucht von</translation>
    </message>
    <message>
        <source>Took (ms)</source>
        <translation>Dauer (ms)</translation>
    </message>
    <message>
        <source>nobody</source>
        <translation>niemandem</translation>
    </message>
    <message>
        <source>another context</source>
        <translation>einem anderen Kontext</translation>
    </message>
</context>
<context>
    <name>quon::viewer::InspectorPanel</name>
    <message>
        <source>Inspector</source>
        <translation>Inspektor</translation>
    </message>
    <message>
        <source>Pause: keep what is shown</source>
        <translation>Anhalten: Angezeigtes behalten</translation>
    </message>
    <message>
        <source>Clear the events</source>
        <translation>Ereignisse löschen</translation>
    </message>
    <message>
        <source>Copy the selected events, or all that are shown</source>
        <translation>Ausgewählte oder alle angezeigten Ereignisse kopieren</translation>
    </message>
    <message>
        <source>Filter by event, verb or context</source>
        <translation>Nach Ereignis, Verb oder Kontext filtern</translation>
    </message>
    <message>
        <source>Filter of the events</source>
        <translation>Filter der Ereignisse</translation>
    </message>
    <message>
        <source>Movements</source>
        <translation>Bewegungen</translation>
    </message>
    <message>
        <source>Show the events of every movement, hover and process</source>
        <translation>Ereignisse jeder Bewegung zeigen: hover und process</translation>
    </message>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>Stack of contexts, top first</source>
        <translation>Stapel der Kontexte, oberster zuerst</translation>
    </message>
    <message>
        <source>Context</source>
        <translation>Kontext</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Raised</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Eingeschaltet</translation>
    </message>
    <message>
        <source>Modes</source>
        <translation>Modi</translation>
    </message>
    <message>
        <source>Picks</source>
        <translation>Picks</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Containers</source>
        <translation>Container</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>%1 asked, %2 cached, %3 run</source>
        <translation>%1 gefragt, %2 aus dem Speicher, %3 ausgeführt</translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>noch keines</translation>
    </message>
    <message>
        <source>%1 ms, median %2 ms of %3</source>
        <translation>%1 ms, Median %2 ms aus %3</translation>
    </message>
    <message>
        <source>%1 alive</source>
        <translation>%1 am Leben</translation>
    </message>
    <message>
        <source>counting ...</source>
        <translation>wird gezählt ...</translation>
    </message>
    <message>
        <source>%1 shown of %2</source>
        <translation>%1 von %2 gezeigt</translation>
    </message>
    <message>
        <source>below all</source>
        <translation>unter allen</translation>
    </message>
</context>
<context>
    <name>quon::viewer::LanguageMenu</name>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>System default</source>
        <translation>Systemsprache</translation>
    </message>
</context>
<context>
    <name>quon::viewer::LoadJob</name>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>Preparing %1</source>
        <translation>%1 wird vorbereitet</translation>
    </message>
    <message numerus="yes">
        <source>Building the scene: %1 of %Ln parts</source>
        <translation>
            <numerusform>Szene wird aufgebaut: %1 von %Ln Teil</numerusform>
            <numerusform>Szene wird aufgebaut: %1 von %Ln Teilen</numerusform>
        </translation>
    </message>
    <message>
        <source>Preparing the selection in %1</source>
        <translation>Auswahl in %1 wird vorbereitet</translation>
    </message>
</context>
<context>
    <name>quon::viewer::LoadProgress</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stop loading and keep what is shown</source>
        <translation>Laden abbrechen und Angezeigtes behalten</translation>
    </message>
    <message>
        <source>Progress of loading</source>
        <translation>Fortschritt beim Laden</translation>
    </message>
</context>
<context>
    <name>quon::viewer::LockEdit</name>
    <message numerus="yes">
        <source>Lock %n parts</source>
        <translation>
            <numerusform>%n Teil sperren</numerusform>
            <numerusform>%n Teile sperren</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Unlock %n parts</source>
        <translation>
            <numerusform>%n Teil entsperren</numerusform>
            <numerusform>%n Teile entsperren</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::MainWindow</name>
    <message>
        <source>Assembly</source>
        <translation>Baugruppe</translation>
    </message>
    <message>
        <source>Record input</source>
        <translation>Eingaben aufzeichnen</translation>
    </message>
    <message>
        <source>Recordings (*.txt);;All files (*)</source>
        <translation>Aufzeichnungen (*.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>koviewer</source>
        <translation>koviewer</translation>
    </message>
    <message>
        <source>%1 - koviewer</source>
        <translation>%1 - koviewer</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>Öffnen...</translation>
    </message>
    <message>
        <source>Open a model (%1)</source>
        <translation>Modell öffnen (%1)</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Select</source>
        <translation>&amp;Auswahl</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>An&amp;sicht</translation>
    </message>
    <message>
        <source>Turn and move</source>
        <translation>Drehen und verschieben</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>E&amp;xtras</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>Panels</source>
        <translation>Bedienfelder</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>About koviewer</source>
        <translation>Über koviewer</translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation>Symbolleiste</translation>
    </message>
    <message numerus="yes">
        <source>%n parts</source>
        <translation>
            <numerusform>%n Teil</numerusform>
            <numerusform>%n Teile</numerusform>
        </translation>
    </message>
    <message>
        <source>koviewer %1</source>
        <translation>koviewer %1</translation>
    </message>
    <message>
        <source>A viewer for models, and the reference host of libkoInteraction: what you click, drag and type goes through the library as named events. The inspector (%1) shows them.

Qt %2, MIT licence.</source>
        <translation>Ein Betrachter für Modelle und die Referenzanwendung von libkoInteraction: Was Sie klicken, ziehen und tippen, geht als benannte Ereignisse durch die Bibliothek. Der Inspektor (%1) zeigt sie.

Qt %2, MIT-Lizenz.</translation>
    </message>
    <message>
        <source>Open a model</source>
        <translation>Modell öffnen</translation>
    </message>
    <message>
        <source>Width, height and depth of the model</source>
        <translation>Breite, Höhe und Tiefe des Modells</translation>
    </message>
    <message>
        <source>Width, height and depth of the model; the file does not say in which unit</source>
        <translation>Breite, Höhe und Tiefe des Modells; die Einheit nennt die Datei nicht</translation>
    </message>
    <message>
        <source>%1 is no longer there and was taken off the recent files.</source>
        <translation>%1 gibt es nicht mehr; der Eintrag wurde aus den zuletzt geöffneten Dateien entfernt.</translation>
    </message>
    <message>
        <source>%1 was loaded in part. %2</source>
        <translation>%1 wurde teilweise geladen. %2</translation>
    </message>
</context>
<context>
    <name>quon::viewer::MessageBar</name>
    <message>
        <source>Close this message</source>
        <translation>Meldung schließen</translation>
    </message>
    <message>
        <source>Hide details</source>
        <translation>Einzelheiten ausblenden</translation>
    </message>
    <message>
        <source>Show details</source>
        <translation>Einzelheiten anzeigen</translation>
    </message>
</context>
<context>
    <name>quon::viewer::ModelArea</name>
    <message>
        <source>Drop one model at a time.</source>
        <translation>Bitte nur ein Modell auf einmal ablegen.</translation>
    </message>
    <message>
        <source>%1 is not a file on this computer.</source>
        <translation>%1 ist keine Datei auf diesem Rechner.</translation>
    </message>
    <message>
        <source>What was dropped is not a file.</source>
        <translation>Was abgelegt wurde, ist keine Datei.</translation>
    </message>
</context>
<context>
    <name>quon::viewer::ModelMenus</name>
    <message>
        <source>Up axis</source>
        <translation>Hochachse</translation>
    </message>
    <message>
        <source>&amp;y up</source>
        <translation>&amp;y nach oben</translation>
    </message>
    <message>
        <source>&amp;z up</source>
        <translation>&amp;z nach oben</translation>
    </message>
    <message>
        <source>Unit of the model</source>
        <translation>Einheit des Modells</translation>
    </message>
    <message>
        <source>Not known</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Metres</source>
        <translation>Meter</translation>
    </message>
    <message>
        <source>Centimetres</source>
        <translation>Zentimeter</translation>
    </message>
    <message>
        <source>Millimetres</source>
        <translation>Millimeter</translation>
    </message>
    <message>
        <source>Inches</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>Show lengths in</source>
        <translation>Längen anzeigen in</translation>
    </message>
</context>
<context>
    <name>quon::viewer::ModelOpener</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>All models (%1)</source>
        <translation>Alle Modelle (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>quon::viewer::PresenterMode</name>
    <message>
        <source>Presenter mode: %1 or %2 ends it</source>
        <translation>Präsentationsmodus: %1 oder %2 beendet ihn</translation>
    </message>
    <message>
        <source>Presenter mode: %1 ends it</source>
        <translation>Präsentationsmodus: %1 beendet ihn</translation>
    </message>
</context>
<context>
    <name>quon::viewer::RecentFilesMenu</name>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>%1  %2</source>
        <translation>%1  %2</translation>
    </message>
    <message>
        <source>%1  %2 (no longer there)</source>
        <translation>%1  %2 (nicht mehr vorhanden)</translation>
    </message>
    <message>
        <source>No files yet</source>
        <translation>Noch keine Dateien</translation>
    </message>
    <message>
        <source>Clear the list</source>
        <translation>Liste leeren</translation>
    </message>
</context>
<context>
    <name>quon::viewer::RecordingControl</name>
    <message>
        <source>Recording input to %1</source>
        <translation>Eingaben werden in %1 aufgezeichnet</translation>
    </message>
</context>
<context>
    <name>quon::viewer::SceneTreeModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Shown</source>
        <translation>Sichtbar</translation>
    </message>
    <message>
        <source>Locked</source>
        <translation>Gesperrt</translation>
    </message>
    <message>
        <source>Unnamed part</source>
        <translation>Teil ohne Namen</translation>
    </message>
    <message>
        <source>Hidden</source>
        <translation>Ausgeblendet</translation>
    </message>
    <message>
        <source>Hidden with its group</source>
        <translation>Mit der Gruppe ausgeblendet</translation>
    </message>
    <message>
        <source>Locked with its group</source>
        <translation>Mit der Gruppe gesperrt</translation>
    </message>
    <message>
        <source>Not locked</source>
        <translation>Nicht gesperrt</translation>
    </message>
</context>
<context>
    <name>quon::viewer::SceneTreePanel</name>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
    <message numerus="yes">
        <source>%Ln found</source>
        <translation>
            <numerusform>%Ln gefunden</numerusform>
            <numerusform>%Ln gefunden</numerusform>
        </translation>
    </message>
    <message>
        <source>%L1 of %L2</source>
        <translation>%L1 von %L2</translation>
    </message>
    <message>
        <source>No model</source>
        <translation>Kein Modell</translation>
    </message>
    <message>
        <source>No part has this name</source>
        <translation>Kein Teil heißt so</translation>
    </message>
    <message>
        <source>Expand all</source>
        <translation>Alles aufklappen</translation>
    </message>
    <message>
        <source>Collapse all</source>
        <translation>Alles zuklappen</translation>
    </message>
    <message>
        <source>Scene</source>
        <translation>Szene</translation>
    </message>
    <message>
        <source>Find parts</source>
        <translation>Teile suchen</translation>
    </message>
    <message>
        <source>Type a part of a name; Enter goes to the next part, Shift+Enter to the previous one</source>
        <translation>Namensteil eingeben; Eingabe geht zum nächsten Teil, Umschalt+Eingabe zum vorigen</translation>
    </message>
    <message>
        <source>Parts</source>
        <translation>Teile</translation>
    </message>
    <message>
        <source>Previous part found</source>
        <translation>Voriges gefundenes Teil</translation>
    </message>
    <message>
        <source>Next part found</source>
        <translation>Nächstes gefundenes Teil</translation>
    </message>
    <message>
        <source>Select all parts found</source>
        <translation>Alle gefundenen Teile auswählen</translation>
    </message>
</context>
<context>
    <name>quon::viewer::ScriptPlayer</name>
    <message>
        <source>Replaying a recording, Escape ends it</source>
        <translation>Eine Aufzeichnung wird abgespielt, Esc beendet sie</translation>
    </message>
</context>
<context>
    <name>quon::viewer::SelectionEdit</name>
    <message>
        <source>Clear selection</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message numerus="yes">
        <source>Deselect %n parts</source>
        <translation>
            <numerusform>%n Teil abwählen</numerusform>
            <numerusform>%n Teile abwählen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Add %n parts to the selection</source>
        <translation>
            <numerusform>%n Teil zur Auswahl hinzufügen</numerusform>
            <numerusform>%n Teile zur Auswahl hinzufügen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Select %n parts</source>
        <translation>
            <numerusform>%n Teil auswählen</numerusform>
            <numerusform>%n Teile auswählen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::SelectionLookEditor</name>
    <message>
        <source>Drawn as</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Boxes</source>
        <translation>Quader</translation>
    </message>
    <message>
        <source>Wireframe</source>
        <translation>Drahtgitter</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Choose the colour</source>
        <translation>Farbe wählen</translation>
    </message>
    <message>
        <source>Over everything</source>
        <translation>Über allem</translation>
    </message>
    <message>
        <source>Draw over nearer parts, too</source>
        <translation>Auch über näheren Teilen zeichnen</translation>
    </message>
    <message>
        <source>Transparency</source>
        <translation>Transparenz</translation>
    </message>
    <message>
        <source>Marker size</source>
        <translation>Markergröße</translation>
    </message>
    <message>
        <source>Half the edge of the cube that marks a group without extent, in the units of the model</source>
        <translation>Halbe Kante des Würfels, der eine Gruppe ohne Ausdehnung markiert, in Einheiten des Modells</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>quon::viewer::SelectionSets</name>
    <message>
        <source>Make %1</source>
        <translation>%1 anlegen</translation>
    </message>
    <message>
        <source>Delete %1</source>
        <translation>%1 löschen</translation>
    </message>
    <message>
        <source>Rename %1</source>
        <translation>%1 umbenennen</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>%1 ändern</translation>
    </message>
    <message>
        <source>A set needs a name.</source>
        <translation>Ein Satz braucht einen Namen.</translation>
    </message>
    <message>
        <source>There is a set called %1 already.</source>
        <translation>Einen Satz namens %1 gibt es schon.</translation>
    </message>
    <message>
        <source>Set %1</source>
        <translation>Satz %1</translation>
    </message>
</context>
<context>
    <name>quon::viewer::SelectionSetsPanel</name>
    <message>
        <source>Selection sets</source>
        <translation>Auswahlsätze</translation>
    </message>
    <message>
        <source>Select parts and press + to keep them as a set.</source>
        <translation>Teile auswählen und + drücken, um sie als Satz aufzubewahren.</translation>
    </message>
    <message>
        <source>New set</source>
        <translation>Neuer Satz</translation>
    </message>
    <message>
        <source>Keep the selected parts as a set</source>
        <translation>Ausgewählte Teile als Satz aufbewahren</translation>
    </message>
    <message>
        <source>Recall</source>
        <translation>Abrufen</translation>
    </message>
    <message>
        <source>Select the parts of the set (Enter)</source>
        <translation>Teile des Satzes auswählen (Eingabe)</translation>
    </message>
    <message>
        <source>Add to selection</source>
        <translation>Zur Auswahl hinzufügen</translation>
    </message>
    <message>
        <source>Select the parts of the set as well</source>
        <translation>Teile des Satzes zusätzlich auswählen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Rename the set (F2)</source>
        <translation>Satz umbenennen (F2)</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete the set (Del)</source>
        <translation>Satz löschen (Entf)</translation>
    </message>
    <message>
        <source>Combine</source>
        <translation>Verknüpfen</translation>
    </message>
    <message>
        <source>Combine the set with the selection or with another set</source>
        <translation>Satz mit der Auswahl oder einem anderen Satz verknüpfen</translation>
    </message>
    <message>
        <source>Selection</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Replace by selection</source>
        <translation>Durch Auswahl ersetzen</translation>
    </message>
    <message>
        <source>Unite with selection</source>
        <translation>Mit Auswahl vereinigen</translation>
    </message>
    <message>
        <source>Intersect with selection</source>
        <translation>Mit Auswahl schneiden</translation>
    </message>
    <message>
        <source>Subtract selection</source>
        <translation>Auswahl abziehen</translation>
    </message>
    <message>
        <source>Unite with</source>
        <translation>Vereinigen mit</translation>
    </message>
    <message>
        <source>Intersect with</source>
        <translation>Schneiden mit</translation>
    </message>
    <message>
        <source>Subtract</source>
        <translation>Abziehen</translation>
    </message>
</context>
<context>
    <name>quon::viewer::Settings</name>
    <message>
        <source>%1 cannot be read; settings are not kept</source>
        <translation>%1 lässt sich nicht lesen; Einstellungen werden nicht aufbewahrt</translation>
    </message>
    <message>
        <source>%1 cannot be written; settings are not kept</source>
        <translation>%1 lässt sich nicht schreiben; Einstellungen werden nicht aufbewahrt</translation>
    </message>
    <message>
        <source>%1: ignored %2</source>
        <translation>%1: Nicht beachtet wird %2</translation>
    </message>
    <message>
        <source>%1 is damaged; what cannot be read is ignored</source>
        <translation>%1 ist beschädigt; was sich nicht lesen lässt, wird nicht beachtet</translation>
    </message>
</context>
<context>
    <name>quon::viewer::ShortcutsDialog</name>
    <message>
        <source>Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Search by name or key</source>
        <translation>Nach Name oder Taste suchen</translation>
    </message>
    <message>
        <source>Press the key to look for</source>
        <translation>Gesuchte Taste drücken</translation>
    </message>
    <message>
        <source>By key</source>
        <translation>Nach Taste</translation>
    </message>
    <message>
        <source>Search by pressing the key</source>
        <translation>Durch Drücken der Taste suchen</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>No shortcut matches</source>
        <translation>Kein Tastenkürzel passt</translation>
    </message>
    <message>
        <source>&amp;Key:</source>
        <translation>&amp;Taste:</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Leave the command without a key</source>
        <translation>Befehl ohne Taste lassen</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Restore all</source>
        <translation>Alle zurücksetzen</translation>
    </message>
    <message>
        <source>Give all commands their default keys again</source>
        <translation>Allen Befehlen wieder ihre ursprüngliche Taste geben</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Mouse</source>
        <translation>Maus</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Turn and move</source>
        <translation>Drehen und verschieben</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Extras</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Click here and press the key</source>
        <translation>Hier klicken und Taste drücken</translation>
    </message>
    <message>
        <source>Cannot be changed</source>
        <translation>Nicht änderbar</translation>
    </message>
    <message>
        <source>The default key is %1</source>
        <translation>Ursprüngliche Taste: %1</translation>
    </message>
    <message>
        <source>Take it from &apos;%1&apos;</source>
        <translation>„%1“ wegnehmen</translation>
    </message>
    <message>
        <source>Take it from all others</source>
        <translation>Allen anderen wegnehmen</translation>
    </message>
    <message>
        <source>&apos;%1&apos;</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>Also fires %1</source>
        <translation>Löst auch %1 aus</translation>
    </message>
    <message>
        <source>%1 fires in its place</source>
        <translation>Stattdessen wird %1 ausgelöst</translation>
    </message>
    <message>
        <source>Fires in place of %1</source>
        <translation>Verdrängt %1</translation>
    </message>
</context>
<context>
    <name>quon::viewer::StartPage</name>
    <message>
        <source>Drop a model here</source>
        <translation>Modell hier ablegen</translation>
    </message>
    <message>
        <source>glTF, OBJ, STL, PLY, Collada, FBX and many other formats</source>
        <translation>glTF, OBJ, STL, PLY, Collada, FBX und viele andere Formate</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Generate an assembly</source>
        <translation>&amp;Baugruppe erzeugen</translation>
    </message>
    <message>
        <source>Show a made-up assembly of 2,000 parts</source>
        <translation>Eine erfundene Baugruppe aus 2.000 Teilen zeigen</translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation>Zuletzt geöffnete Dateien</translation>
    </message>
    <message>
        <source>Choose a file (%1)</source>
        <translation>Eine Datei auswählen (%1)</translation>
    </message>
</context>
<context>
    <name>quon::viewer::ViewerSession</name>
    <message>
        <source>Undo %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>Nothing selected</source>
        <translation>Nichts ausgewählt</translation>
    </message>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>%n ausgewählt</numerusform>
            <numerusform>%n ausgewählt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n locked</source>
        <translation>
            <numerusform>%n gesperrt</numerusform>
            <numerusform>%n gesperrt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hidden</source>
        <translation>
            <numerusform>%n ausgeblendet</numerusform>
            <numerusform>%n ausgeblendet</numerusform>
        </translation>
    </message>
    <message>
        <source>boxes over the scene</source>
        <translation>Quader über der Szene</translation>
    </message>
    <message>
        <source>boxes in the scene</source>
        <translation>Quader in der Szene</translation>
    </message>
    <message>
        <source>wireframe over the scene</source>
        <translation>Drahtgitter über der Szene</translation>
    </message>
    <message>
        <source>wireframe in the scene</source>
        <translation>Drahtgitter in der Szene</translation>
    </message>
    <message>
        <source>%1  |  %2</source>
        <translation>%1  |  %2</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>quon::viewer::Viewport</name>
    <message>
        <source>This display offers no OpenGL, so the model cannot be drawn here.</source>
        <translation>Dieser Bildschirm bietet kein OpenGL; das Modell lässt sich hier nicht zeichnen.</translation>
    </message>
</context>
<context>
    <name>quon::viewer::VisibilityEdit</name>
    <message numerus="yes">
        <source>Hide %n parts</source>
        <translation>
            <numerusform>%n Teil ausblenden</numerusform>
            <numerusform>%n Teile ausblenden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Show %n parts</source>
        <translation>
            <numerusform>%n Teil einblenden</numerusform>
            <numerusform>%n Teile einblenden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Isolate %n parts</source>
        <translation>
            <numerusform>%n Teil isolieren</numerusform>
            <numerusform>%n Teile isolieren</numerusform>
        </translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>Alles einblenden</translation>
    </message>
</context>
</TS>
