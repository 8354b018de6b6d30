<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>ModelReader</name>
    <message numerus="yes">
        <source>%n of %1 meshes could not be read.</source>
        <translation>
            <numerusform>%n of %1 meshes could not be read.</numerusform>
            <numerusform>%n of %1 meshes could not be read.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The reader reported %n problems, first: %1</source>
        <translation>
            <numerusform>The reader reported a problem: %1</numerusform>
            <numerusform>The reader reported %n problems, first: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n faces could not be read.</source>
        <translation>
            <numerusform>%n faces could not be read.</numerusform>
            <numerusform>%n faces could not be read.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n meshes are used but not in the file.</source>
        <translation>
            <numerusform>%n meshes are used but not in the file.</numerusform>
            <numerusform>%n meshes are used but not in the file.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::LoadJob</name>
    <message numerus="yes">
        <source>Building the scene: %1 of %Ln parts</source>
        <translation>
            <numerusform>Building the scene: %1 of %Ln part</numerusform>
            <numerusform>Building the scene: %1 of %Ln parts</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::LockEdit</name>
    <message numerus="yes">
        <source>Lock %n parts</source>
        <translation>
            <numerusform>Lock %n part</numerusform>
            <numerusform>Lock %n parts</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Unlock %n parts</source>
        <translation>
            <numerusform>Unlock %n part</numerusform>
            <numerusform>Unlock %n parts</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::MainWindow</name>
    <message numerus="yes">
        <source>%n parts</source>
        <translation>
            <numerusform>%n part</numerusform>
            <numerusform>%n parts</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::SceneTreePanel</name>
    <message numerus="yes">
        <source>%Ln found</source>
        <translation>
            <numerusform>%Ln found</numerusform>
            <numerusform>%Ln found</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::SelectionEdit</name>
    <message numerus="yes">
        <source>Deselect %n parts</source>
        <translation>
            <numerusform>Deselect %n part</numerusform>
            <numerusform>Deselect %n parts</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Add %n parts to the selection</source>
        <translation>
            <numerusform>Add %n part to the selection</numerusform>
            <numerusform>Add %n parts to the selection</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Select %n parts</source>
        <translation>
            <numerusform>Select %n part</numerusform>
            <numerusform>Select %n parts</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::ViewerSession</name>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>%n selected</numerusform>
            <numerusform>%n selected</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n locked</source>
        <translation>
            <numerusform>%n locked</numerusform>
            <numerusform>%n locked</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hidden</source>
        <translation>
            <numerusform>%n hidden</numerusform>
            <numerusform>%n hidden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quon::viewer::VisibilityEdit</name>
    <message numerus="yes">
        <source>Hide %n parts</source>
        <translation>
            <numerusform>Hide %n part</numerusform>
            <numerusform>Hide %n parts</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Show %n parts</source>
        <translation>
            <numerusform>Show %n part</numerusform>
            <numerusform>Show %n parts</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Isolate %n parts</source>
        <translation>
            <numerusform>Isolate %n part</numerusform>
            <numerusform>Isolate %n parts</numerusform>
        </translation>
    </message>
</context>
</TS>
