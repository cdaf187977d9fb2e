CREATE TABLE 'belongs_to' ('id_font' INTEGER NOT NULL ,'id_group' INTEGER NOT NULL ,PRIMARY KEY ('id_font', 'id_group'));
--
CREATE TABLE 'font' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'ranking' INTEGER ,'id_note' INTEGER ,'filehash' CHAR(42) NOT NULL UNIQUE ,'id_orig_font' INTEGER);
--
CREATE INDEX index_id_orig_font ON font (id_orig_font);
--
CREATE TABLE 'group' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'name' CHAR(64) ,'id_parent' INTEGER);
--
CREATE TABLE 'note' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'text' CHAR(4096));
--
CREATE TABLE 'project' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'name' CHAR(64) NOT NULL ,'filename' CHAR(1024) NOT NULL );
--
CREATE TABLE 'tag' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'text' CHAR(64) NOT NULL );
--
CREATE TABLE 'tagged_with' ('id_font' INTEGER NOT NULL ,'id_tag' INTEGER NOT NULL ,PRIMARY KEY ('id_font', 'id_tag'));
--
CREATE TABLE 'used_in' ('id_font' INTEGER NOT NULL ,'id_project' INTEGER NOT NULL ,PRIMARY KEY ('id_font', 'id_project'));
--
CREATE TABLE 'properties' ('last_sync' DATETIME PRIMARY KEY  NOT NULL )
--
CREATE TRIGGER on_insert_font AFTER INSERT ON `font`
BEGIN
    UPDATE font SET id_orig_font=new.id WHERE id=new.id AND id_orig_font IS NULL;
END
--
CREATE TRIGGER on_delete_group AFTER DELETE ON `group`
BEGIN
    DELETE FROM belongs_to WHERE id_group=old.id;
    DELETE FROM `group` WHERE id_parent=old.id;
END
--
INSERT INTO note (id, text) VALUES (4, 'Für die Überschrift; 100 % "gut"')
--
INSERT INTO font (id, ranking, id_note, filehash) VALUES (1, 5, 4, '0000000000000000000000000000000000000000aa')
--
INSERT INTO font (id, ranking, id_note, filehash) VALUES (2, 0, 0, '0000000000000000000000000000000000000000bb')
--
INSERT INTO 'group' (id, name, id_parent) VALUES (7, 'Plakate', 0)
--
INSERT INTO 'group' (id, name, id_parent) VALUES (8, 'O''Neill "quoted"', 7)
--
INSERT INTO belongs_to (id_font, id_group) VALUES (1, 7)
--
INSERT INTO belongs_to (id_font, id_group) VALUES (2, 8)
--
INSERT INTO tag (id, text) VALUES (1, 'kept')
--
PRAGMA user_version = 3
