<?xml version="1.0" encoding="UTF-8"?>
<!--
  Makes of an exported Microsoft Project XML file the copy that the strictest readers open right: children in the
  published order, outline numbers, custom fields with numbers that exist, no weekday twice in a work week.
  The command mspdi-conform runs it; man/mspdi-conform.1 says what it changes. Run on its own output it changes nothing.

  No step looks through all tasks for each task: the time grows with their number.
-->
<xsl:stylesheet version="1.0"
    xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:ms="http://schemas.microsoft.com/project"
    xmlns:exsl="http://exslt.org/common"
    xmlns:set="http://exslt.org/sets"
    xmlns:str="http://exslt.org/strings"
    xmlns="http://schemas.microsoft.com/project"
    exclude-result-prefixes="ms exsl set str">

  <xsl:output method="xml" encoding="UTF-8" indent="yes"/>

  <!-- Names a project that has no title. -->
  <xsl:param name="base-name" select="'Project'"/>

  <!-- The published orders, but for those of which there are many. Each name stands between blanks. -->
  <xsl:variable name="project-order" select="concat(' ', normalize-space('
      SaveVersion Name Title ScheduleFromStart StartDate FinishDate CurrencyDigits CurrencySymbol CurrencyCode
      CurrencySymbolPosition CalendarUID HonorConstraints WeekStartDay NewTasksAreManual ProjectExternallyEdited
      ExtendedAttributes Calendars Tasks Resources Assignments'), ' ')"/>
  <xsl:variable name="definition-order" select="' FieldID FieldName Guid Alias '"/>
  <xsl:variable name="calendar-order" select="concat(' ', normalize-space('
      UID Name IsBaseCalendar BaseCalendarUID WeekDays Exceptions WorkWeeks'), ' ')"/>
  <xsl:variable name="week-day-order" select="' DayType DayWorking TimePeriod WorkingTimes '"/>
  <xsl:variable name="exception-order" select="concat(' ', normalize-space('
      EnteredByOccurrences TimePeriod Occurrences Name Type DayWorking WorkingTimes'), ' ')"/>
  <xsl:variable name="work-week-order" select="' TimePeriod Name WeekDays '"/>
  <xsl:variable name="resource-order" select="concat(' ', normalize-space('
      UID ID Name Type IsNull Group EmailAddress MaxUnits StandardRate StandardRateFormat CostPerUse CalendarUID Notes
      ExtendedAttribute Baseline'), ' ')"/>
  <xsl:variable name="timephased-order" select="' Type UID Start Finish Unit Value '"/>

  <!-- The numbers of Text1 to Text30, ten characters each. -->
  <xsl:variable name="task-fields" select="normalize-space('
      188743731 188743734 188743737 188743740 188743743 188743746 188743747 188743748 188743749 188743750 188743997
      188743998 188743999 188744000 188744001 188744002 188744003 188744004 188744005 188744006 188744007 188744008
      188744009 188744010 188744011 188744012 188744013 188744014 188744015 188744016')"/>
  <xsl:variable name="resource-fields" select="normalize-space('
      205520904 205520905 205520926 205520927 205520928 205520993 205520994 205520995 205520996 205520997 205521121
      205521122 205521123 205521124 205521125 205521126 205521127 205521128 205521129 205521130 205521131 205521132
      205521133 205521134 205521135 205521136 205521137 205521138 205521139 205521140')"/>

  <!-- With whole paths, so that they are not looked for in all of the tree. -->
  <xsl:key name="definition" match="/ms:Project/ms:ExtendedAttributes/ms:ExtendedAttribute" use="ms:FieldID"/>
  <!-- The tasks and resources that have a value of the field. -->
  <xsl:key name="holder" match="/ms:Project/ms:Tasks/ms:Task | /ms:Project/ms:Resources/ms:Resource"
           use="ms:ExtendedAttribute/ms:FieldID"/>
  <xsl:key name="calendar" match="/ms:Project/ms:Calendars/ms:Calendar" use="substring(ms:Name, 1, 51)"/>
  <xsl:key name="done-task" match="/ms:Project/ms:Tasks/ms:Task[ms:PercentComplete = 100]" use="ms:UID"/>
  <xsl:key name="row" match="/row" use="@at"/>

  <!-- The numbers of resource fields are the higher ones. -->
  <xsl:variable name="definitions" select="/ms:Project/ms:ExtendedAttributes/ms:ExtendedAttribute"/>
  <xsl:variable name="task-definitions" select="$definitions[not(ms:FieldID &gt;= 205520904)]"/>
  <xsl:variable name="resource-definitions" select="$definitions[ms:FieldID &gt;= 205520904]"/>

  <!--
    The first use of each alias: the alias or, without one, the definition. Told apart by object kind; a key would copy
    all definitions of an alias as often as there are any.
  -->
  <xsl:variable name="task-aliases" select="set:distinct($task-definitions/ms:Alias[text()]) |
                                            $task-definitions[not(string(ms:Alias))][1]"/>
  <xsl:variable name="resource-aliases" select="set:distinct($resource-definitions/ms:Alias[text()]) |
                                                $resource-definitions[not(string(ms:Alias))][1]"/>

  <!-- One row for each kind and alias, up to the thirtieth. -->
  <xsl:variable name="field-rows">
    <xsl:call-template name="field-rows-of-kind">
      <xsl:with-param name="aliases" select="$task-aliases"/>
      <xsl:with-param name="numbers" select="$task-fields"/>
    </xsl:call-template>
    <xsl:call-template name="field-rows-of-kind">
      <xsl:with-param name="aliases" select="$resource-aliases"/>
      <xsl:with-param name="numbers" select="$resource-fields"/>
    </xsl:call-template>
  </xsl:variable>
  <xsl:variable name="fields" select="exsl:node-set($field-rows)"/>

  <xsl:template name="field-rows-of-kind">
    <xsl:param name="aliases"/>
    <xsl:param name="numbers"/>
    <xsl:for-each select="$aliases[position() &lt;= 30]/ancestor-or-self::ms:ExtendedAttribute">
      <row at="{ms:FieldID &gt;= 205520904} {ms:Alias}" definition="{generate-id()}"
           id="{substring($numbers, 10 * position() - 9, 9)}" name="Text{position()}" xmlns=""/>
    </xsl:for-each>
  </xsl:template>

  <!--
    The new number of each value. The exporter numbers the fields anew for each task and resource and appends their
    definitions in the same order, so the n-th definition of a number belongs to the n-th object that has a value of it,
    and the only definition to all of them. First the rows of the definitions, at "number #n", then those of the values,
    at "object number"; "none" is the new number past the thirtieth alias.
  -->
  <xsl:variable name="definition-rows">
    <xsl:for-each select="set:distinct($definitions/ms:FieldID)">
      <xsl:for-each select="key('definition', .)">
        <xsl:variable name="numbered" select="concat(ms:FieldID, ' #', position())"/>
        <xsl:variable name="alias" select="concat(ms:FieldID &gt;= 205520904, ' ', ms:Alias)"/>
        <xsl:for-each select="$fields">
          <xsl:variable name="field" select="key('row', $alias)"/>
          <row at="{$numbered}" new="{$field/@id}{substring('none', 1, 4 * not($field))}" xmlns=""/>
        </xsl:for-each>
      </xsl:for-each>
    </xsl:for-each>
  </xsl:variable>
  <xsl:variable name="numbered-definitions" select="exsl:node-set($definition-rows)"/>

  <xsl:variable name="value-rows">
    <xsl:for-each select="set:distinct($definitions/ms:FieldID)">
      <xsl:variable name="number" select="string()"/>
      <xsl:variable name="defined" select="count(key('definition', $number))"/>
      <xsl:variable name="holders" select="key('holder', $number)"/>
      <xsl:if test="$defined != 1 and $defined != count($holders)">
        <xsl:message terminate="yes">
          <xsl:value-of select="concat('custom field ', $number, ' is defined ', $defined, ' times but ',
                                  count($holders), ' tasks and resources have it: no telling which is which')"/>
        </xsl:message>
      </xsl:if>
      <xsl:for-each select="$holders">
        <xsl:variable name="place" select="concat(generate-id(), ' ', $number)"/>
        <xsl:variable name="definition" select="concat($number, ' #', 1 + ($defined != 1) * (position() - 1))"/>
        <xsl:variable name="holder" select="."/>
        <xsl:for-each select="$numbered-definitions">
          <xsl:variable name="new" select="key('row', $definition)/@new"/>
          <row at="{$place}" new="{$new}" xmlns="">
            <xsl:if test="$new = 'none'">
              <xsl:attribute name="{local-name($holder)}">
                <xsl:value-of select="count($holder/ms:ExtendedAttribute[ms:FieldID = $number])"/>
              </xsl:attribute>
            </xsl:if>
          </row>
        </xsl:for-each>
      </xsl:for-each>
    </xsl:for-each>
  </xsl:variable>
  <xsl:variable name="numbered-values" select="exsl:node-set($value-rows)"/>

  <xsl:template match="/">
    <xsl:if test="not(ms:Project)">
      <xsl:message terminate="yes">this is no Microsoft Project XML file</xsl:message>
    </xsl:if>
    <xsl:apply-templates/>
  </xsl:template>

  <!--
    Copies the element with its children, and those of $added, in the order; what the order does not name goes last.
    Here and below the blanks between elements are left behind (indent lays them out anew): text is not selected.
  -->
  <xsl:template name="in-order">
    <xsl:param name="order"/>
    <xsl:param name="added" select="/.."/>
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:apply-templates select="* | comment() | processing-instruction() | $added">
        <xsl:sort data-type="number" select="string-length(substring-before(concat($order, local-name(), ' '),
                                                                            concat(' ', local-name(), ' ')))"/>
      </xsl:apply-templates>
    </xsl:copy>
  </xsl:template>

  <xsl:template match="node()"><xsl:copy-of select="."/></xsl:template>

  <xsl:template match="ms:Calendars | ms:WeekDays | ms:TimePeriod | ms:WorkingTimes | ms:WorkingTime | ms:WorkWeeks |
                       ms:Tasks | ms:Resources | ms:Assignments">
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:apply-templates select="* | comment() | processing-instruction()"/>
    </xsl:copy>
  </xsl:template>

  <!-- An empty date-time is not valid. -->
  <xsl:template match="ms:Start | ms:Finish | ms:StartDate | ms:FinishDate | ms:FromDate | ms:ToDate | ms:ActualStart |
                       ms:ActualFinish | ms:ConstraintDate">
    <xsl:if test="normalize-space()"><xsl:copy-of select="."/></xsl:if>
  </xsl:template>

  <!-- Project -->

  <xsl:template match="ms:Project">
    <xsl:variable name="added">
      <xsl:if test="not(normalize-space(ms:Name))">
        <Name>
          <xsl:choose>
            <xsl:when test="normalize-space(ms:Title)"><xsl:value-of select="ms:Title"/></xsl:when>
            <xsl:otherwise><xsl:value-of select="$base-name"/></xsl:otherwise>
          </xsl:choose>
        </Name>
      </xsl:if>
    </xsl:variable>
    <xsl:call-template name="in-order">
      <xsl:with-param name="order" select="$project-order"/>
      <xsl:with-param name="added" select="exsl:node-set($added)/*"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template match="ms:Project/ms:Name[not(normalize-space())]"/>

  <!-- Custom fields -->

  <!-- A definition is written where its alias comes first. -->
  <xsl:template match="ms:Project/ms:ExtendedAttributes">
    <xsl:call-template name="say-left-out">
      <xsl:with-param name="kind" select="'task'"/>
      <xsl:with-param name="fields" select="count($task-aliases) - 30"/>
      <xsl:with-param name="values" select="sum($numbered-values/row/@Task)"/>
    </xsl:call-template>
    <xsl:call-template name="say-left-out">
      <xsl:with-param name="kind" select="'resource'"/>
      <xsl:with-param name="fields" select="count($resource-aliases) - 30"/>
      <xsl:with-param name="values" select="sum($numbered-values/row/@Resource)"/>
    </xsl:call-template>
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:apply-templates select="$task-aliases[position() &lt;= 30]/ancestor-or-self::ms:ExtendedAttribute |
                                   $resource-aliases[position() &lt;= 30]/ancestor-or-self::ms:ExtendedAttribute |
                                   *[not(self::ms:ExtendedAttribute)] | comment() | processing-instruction()"/>
    </xsl:copy>
  </xsl:template>

  <xsl:template name="say-left-out">
    <xsl:param name="kind"/>
    <xsl:param name="fields"/>
    <xsl:param name="values"/>
    <xsl:if test="$fields &gt; 0">
      <xsl:message>
        <xsl:value-of select="concat($kind, ' fields past Text30 left out: ', $fields, ' fields with ', $values,
                                     ' values')"/>
      </xsl:message>
    </xsl:if>
  </xsl:template>

  <xsl:template match="ms:Project/ms:ExtendedAttributes/ms:ExtendedAttribute">
    <xsl:variable name="field" select="$fields/row[@definition = generate-id(current())]"/>
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <FieldID><xsl:value-of select="$field/@id"/></FieldID>
      <FieldName><xsl:value-of select="$field/@name"/></FieldName>
      <xsl:apply-templates select="*[not(self::ms:FieldID or self::ms:FieldName)] | comment() |
                                   processing-instruction()">
        <xsl:sort data-type="number"
                  select="string-length(substring-before(concat($definition-order, local-name(), ' '),
                                                         concat(' ', local-name(), ' ')))"/>
      </xsl:apply-templates>
    </xsl:copy>
  </xsl:template>

  <!-- A value keeps its number when nothing defines that. -->
  <xsl:template match="ms:Task/ms:ExtendedAttribute | ms:Resource/ms:ExtendedAttribute">
    <xsl:variable name="value" select="."/>
    <xsl:variable name="at" select="concat(generate-id(..), ' ', ms:FieldID)"/>
    <xsl:for-each select="$numbered-values">
      <xsl:variable name="row" select="key('row', $at)"/>
      <xsl:if test="not($row/@new = 'none')">
        <ExtendedAttribute>
          <xsl:copy-of select="$value/@*"/>
          <FieldID>
            <xsl:value-of select="$row/@new"/>
            <xsl:if test="not($row)"><xsl:value-of select="$value/ms:FieldID"/></xsl:if>
          </FieldID>
          <xsl:copy-of select="$value/*[not(self::ms:FieldID)] | $value/comment() | $value/processing-instruction()"/>
        </ExtendedAttribute>
      </xsl:if>
    </xsl:for-each>
  </xsl:template>

  <!-- Calendars -->

  <xsl:template match="ms:Calendar">
    <xsl:variable name="added">
      <xsl:if test="not(normalize-space(substring(ms:Name, 1, 51)))">
        <Name><xsl:value-of select="concat('Calendar ', ms:UID)"/></Name>
        <xsl:message>
          <xsl:value-of select="concat('calendar ', ms:UID, ' without a name is now &quot;Calendar ', ms:UID,
                                '&quot;')"/>
        </xsl:message>
      </xsl:if>
    </xsl:variable>
    <xsl:call-template name="in-order">
      <xsl:with-param name="order" select="$calendar-order"/>
      <xsl:with-param name="added" select="exsl:node-set($added)/*"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template match="ms:Calendar/ms:Name">
    <xsl:choose>
      <xsl:when test="not(normalize-space(substring(., 1, 51)))"/>
      <xsl:when test="string-length() &gt; 51">
        <!-- When another one begins with the same 51 characters, the UID tells them apart. -->
        <xsl:variable name="end">
          <xsl:if test="key('calendar', substring(., 1, 51))[2]">
            <xsl:value-of select="concat(' (', ../ms:UID, ')')"/>
          </xsl:if>
        </xsl:variable>
        <xsl:variable name="name" select="concat(substring(., 1, 51 - string-length($end)), $end)"/>
        <xsl:copy><xsl:value-of select="$name"/></xsl:copy>
        <xsl:message>
          <xsl:value-of select="concat('calendar ', ../ms:UID, ': &quot;', ., '&quot; is now &quot;', $name,
                                '&quot;')"/>
        </xsl:message>
      </xsl:when>
      <xsl:otherwise><xsl:copy-of select="."/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="ms:WeekDay">
    <xsl:call-template name="in-order"><xsl:with-param name="order" select="$week-day-order"/></xsl:call-template>
  </xsl:template>

  <xsl:template match="ms:Exceptions">
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:apply-templates select="* | comment() | processing-instruction()">
        <xsl:sort select="ms:TimePeriod/ms:FromDate"/>
      </xsl:apply-templates>
    </xsl:copy>
  </xsl:template>

  <xsl:template match="ms:Exception">
    <xsl:call-template name="in-order"><xsl:with-param name="order" select="$exception-order"/></xsl:call-template>
  </xsl:template>

  <xsl:template match="ms:WorkWeek">
    <xsl:call-template name="in-order"><xsl:with-param name="order" select="$work-week-order"/></xsl:call-template>
  </xsl:template>

  <!-- All days of a work week say the same, so the first of a weekday stands for the others. -->
  <xsl:template match="ms:WorkWeek/ms:WeekDays">
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:apply-templates select="ms:WeekDay[ms:DayType = 1][1] | ms:WeekDay[ms:DayType = 2][1] |
                                   ms:WeekDay[ms:DayType = 3][1] | ms:WeekDay[ms:DayType = 4][1] |
                                   ms:WeekDay[ms:DayType = 5][1] | ms:WeekDay[ms:DayType = 6][1] |
                                   ms:WeekDay[ms:DayType = 7][1] |
                                   *[not(self::ms:WeekDay and ms:DayType &gt;= 1 and ms:DayType &lt;= 7)] |
                                   comment() | processing-instruction()"/>
    </xsl:copy>
  </xsl:template>

  <!-- Tasks -->

  <!--
    The outline number of a task follows from that of the task in front of it, which a loop cannot hand on; a recursion
    from task to task would get too deep. So tasks go in runs of 200, and the next run begins with the end of the last.
    A row for each task says its number, such as 3.2.5: in the recursion that is $parent "3.2.", $count 5, $depth 3.
  -->
  <xsl:variable name="outline-rows">
    <xsl:apply-templates select="/ms:Project/ms:Tasks/ms:Task[1]" mode="run"/>
  </xsl:variable>
  <xsl:variable name="outline" select="exsl:node-set($outline-rows)"/>

  <xsl:template match="ms:Task" mode="run">
    <xsl:param name="parent"/>
    <xsl:param name="count" select="0"/>
    <xsl:param name="depth" select="1"/>
    <xsl:variable name="rows">
      <xsl:apply-templates select="." mode="outline">
        <xsl:with-param name="parent" select="$parent"/>
        <xsl:with-param name="count" select="$count"/>
        <xsl:with-param name="depth" select="$depth"/>
        <xsl:with-param name="left" select="200"/>
      </xsl:apply-templates>
    </xsl:variable>
    <xsl:copy-of select="exsl:node-set($rows)/row"/>
    <xsl:variable name="end" select="exsl:node-set($rows)/end"/>
    <xsl:apply-templates select="following-sibling::ms:Task[200]" mode="run">
      <xsl:with-param name="parent" select="string($end/@parent)"/>
      <xsl:with-param name="count" select="number($end/@count)"/>
      <xsl:with-param name="depth" select="number($end/@depth)"/>
    </xsl:apply-templates>
  </xsl:template>

  <!-- The parameters are those of the task in front. -->
  <xsl:template match="ms:Task" mode="outline">
    <xsl:param name="parent"/>
    <xsl:param name="count"/>
    <xsl:param name="depth"/>
    <xsl:param name="left"/>
    <xsl:variable name="level" select="floor(ms:OutlineLevel)"/>
    <xsl:choose>
      <xsl:when test="$level = $depth">
        <xsl:call-template name="outline-from">
          <xsl:with-param name="parent" select="$parent"/>
          <xsl:with-param name="count" select="$count + 1"/>
          <xsl:with-param name="depth" select="$level"/>
          <xsl:with-param name="left" select="$left"/>
        </xsl:call-template>
      </xsl:when>
      <!-- A task that is missing above, because a level is skipped, counts as the first one. -->
      <xsl:when test="$level &gt; $depth">
        <xsl:call-template name="outline-from">
          <xsl:with-param name="parent" select="concat($parent, $count + not($count), '.',
                                                       str:padding(2 * ($level - $depth - 1), '1.'))"/>
          <xsl:with-param name="count" select="1"/>
          <xsl:with-param name="depth" select="$level"/>
          <xsl:with-param name="left" select="$left"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:when test="$level &gt;= 1">
        <xsl:variable name="rest">
          <xsl:call-template name="behind-parts">
            <xsl:with-param name="number" select="$parent"/>
            <xsl:with-param name="parts" select="$level - 1"/>
          </xsl:call-template>
        </xsl:variable>
        <xsl:call-template name="outline-from">
          <xsl:with-param name="parent" select="substring($parent, 1, string-length($parent) - string-length($rest))"/>
          <xsl:with-param name="count" select="substring-before($rest, '.') + 1"/>
          <xsl:with-param name="depth" select="$level"/>
          <xsl:with-param name="left" select="$left"/>
        </xsl:call-template>
      </xsl:when>
      <!-- The project's own task. -->
      <xsl:otherwise>
        <xsl:call-template name="outline-from">
          <xsl:with-param name="number" select="0"/>
          <xsl:with-param name="parent" select="$parent"/>
          <xsl:with-param name="count" select="$count"/>
          <xsl:with-param name="depth" select="$depth"/>
          <xsl:with-param name="left" select="$left"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="outline-from">
    <xsl:param name="parent"/>
    <xsl:param name="count"/>
    <xsl:param name="depth"/>
    <xsl:param name="left"/>
    <xsl:param name="number" select="concat($parent, $count)"/>
    <row at="{generate-id()}" number="{$number}" xmlns=""/>
    <xsl:choose>
      <xsl:when test="$left = 1"><end parent="{$parent}" count="{$count}" depth="{$depth}" xmlns=""/></xsl:when>
      <xsl:otherwise>
        <xsl:apply-templates select="following-sibling::ms:Task[1]" mode="outline">
          <xsl:with-param name="parent" select="$parent"/>
          <xsl:with-param name="count" select="$count"/>
          <xsl:with-param name="depth" select="$depth"/>
          <xsl:with-param name="left" select="$left - 1"/>
        </xsl:apply-templates>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- What stands in a number behind its first parts: "5." in "3.2.5." behind two. -->
  <xsl:template name="behind-parts">
    <xsl:param name="number"/>
    <xsl:param name="parts"/>
    <xsl:choose>
      <xsl:when test="$parts = 0"><xsl:value-of select="$number"/></xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="behind-parts">
          <xsl:with-param name="number" select="substring-after($number, '.')"/>
          <xsl:with-param name="parts" select="$parts - 1"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- Tasks, and what else there are many of, have the published order here: sorting their children would take long.
       What the order does not name goes last. -->
  <xsl:template match="ms:Task">
    <xsl:variable name="id" select="generate-id()"/>
    <xsl:variable name="done" select="self::*[ms:PercentComplete = 100]"/>
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:copy-of select="ms:UID"/>
      <xsl:copy-of select="ms:ID"/>
      <xsl:copy-of select="ms:Name"/>
      <xsl:copy-of select="ms:Active"/>
      <xsl:copy-of select="ms:Manual"/>
      <xsl:copy-of select="ms:Type"/>
      <xsl:copy-of select="ms:IsNull"/>
      <xsl:for-each select="$outline">
        <xsl:variable name="number" select="key('row', $id)/@number"/>
        <WBS><xsl:value-of select="$number"/></WBS>
        <OutlineNumber><xsl:value-of select="$number"/></OutlineNumber>
      </xsl:for-each>
      <xsl:copy-of select="ms:OutlineLevel"/>
      <xsl:copy-of select="ms:Priority"/>
      <xsl:copy-of select="ms:Start[normalize-space()]"/>
      <xsl:copy-of select="ms:Finish[normalize-space()]"/>
      <xsl:copy-of select="ms:Duration"/>
      <xsl:copy-of select="ms:Work"/>
      <xsl:copy-of select="ms:EffortDriven"/>
      <xsl:copy-of select="ms:Estimated"/>
      <xsl:copy-of select="ms:Milestone"/>
      <xsl:copy-of select="ms:Summary"/>
      <xsl:copy-of select="ms:FixedCost"/>
      <xsl:copy-of select="ms:PercentComplete"/>
      <xsl:copy-of select="ms:PercentWorkComplete"/>
      <xsl:call-template name="actual-start"><xsl:with-param name="done" select="$done"/></xsl:call-template>
      <xsl:call-template name="actual-finish"><xsl:with-param name="done" select="$done"/></xsl:call-template>
      <xsl:copy-of select="ms:ConstraintType"/>
      <xsl:copy-of select="ms:ConstraintDate[normalize-space()]"/>
      <xsl:copy-of select="ms:LevelingCanSplit"/>
      <xsl:copy-of select="ms:IgnoreResourceCalendar"/>
      <xsl:copy-of select="ms:Notes"/>
      <xsl:apply-templates select="ms:PredecessorLink"/>
      <xsl:apply-templates select="ms:ExtendedAttribute"/>
      <xsl:apply-templates select="ms:Baseline"/>
      <xsl:apply-templates select="* | comment() | processing-instruction()" mode="others-of-task"/>
    </xsl:copy>
  </xsl:template>
  <xsl:template match="ms:UID | ms:ID | ms:Name | ms:Active | ms:Manual | ms:Type | ms:IsNull | ms:WBS |
                       ms:OutlineNumber | ms:OutlineLevel | ms:Priority | ms:Start | ms:Finish | ms:Duration |
                       ms:Work | ms:EffortDriven | ms:Estimated | ms:Milestone | ms:Summary | ms:FixedCost |
                       ms:PercentComplete | ms:PercentWorkComplete | ms:ActualStart | ms:ActualFinish |
                       ms:ConstraintType | ms:ConstraintDate | ms:LevelingCanSplit | ms:IgnoreResourceCalendar |
                       ms:Notes | ms:PredecessorLink | ms:ExtendedAttribute | ms:Baseline"
                mode="others-of-task"/>
  <xsl:template match="node()" mode="others-of-task"><xsl:copy-of select="."/></xsl:template>

  <!-- In $done is the task when it is 100 percent complete. -->
  <xsl:template name="actual-start">
    <xsl:param name="done"/>
    <xsl:choose>
      <xsl:when test="normalize-space(ms:ActualStart)"><xsl:copy-of select="ms:ActualStart"/></xsl:when>
      <xsl:when test="not($done)"/>
      <xsl:when test="normalize-space(ms:Start)"><ActualStart><xsl:value-of select="ms:Start"/></ActualStart></xsl:when>
      <xsl:when test="normalize-space($done/ms:Start)">
        <ActualStart><xsl:value-of select="$done/ms:Start"/></ActualStart>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="actual-finish">
    <xsl:param name="done"/>
    <xsl:choose>
      <xsl:when test="normalize-space(ms:ActualFinish)"><xsl:copy-of select="ms:ActualFinish"/></xsl:when>
      <xsl:when test="not($done)"/>
      <xsl:when test="normalize-space(ms:Finish)">
        <ActualFinish><xsl:value-of select="ms:Finish"/></ActualFinish>
      </xsl:when>
      <xsl:when test="normalize-space($done/ms:Finish)">
        <ActualFinish><xsl:value-of select="$done/ms:Finish"/></ActualFinish>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="ms:PredecessorLink">
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:copy-of select="ms:PredecessorUID"/>
      <xsl:copy-of select="ms:Type"/>
      <xsl:copy-of select="ms:LinkLag[normalize-space()]"/>
      <xsl:if test="not(normalize-space(ms:LinkLag))"><LinkLag>0</LinkLag></xsl:if>
      <xsl:copy-of select="ms:LagFormat"/>
      <xsl:apply-templates select="* | comment() | processing-instruction()" mode="others-of-link"/>
    </xsl:copy>
  </xsl:template>
  <xsl:template match="ms:PredecessorUID | ms:Type | ms:LinkLag | ms:LagFormat" mode="others-of-link"/>
  <xsl:template match="node()" mode="others-of-link"><xsl:copy-of select="."/></xsl:template>

  <xsl:template match="ms:Baseline">
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:copy-of select="ms:Number"/>
      <xsl:copy-of select="ms:Start[normalize-space()]"/>
      <xsl:copy-of select="ms:Finish[normalize-space()]"/>
      <xsl:copy-of select="ms:Duration"/>
      <xsl:copy-of select="ms:Work"/>
      <xsl:copy-of select="ms:FixedCost"/>
      <xsl:apply-templates select="* | comment() | processing-instruction()" mode="others-of-baseline"/>
    </xsl:copy>
  </xsl:template>
  <xsl:template match="ms:Number | ms:Start | ms:Finish | ms:Duration | ms:Work | ms:FixedCost"
                mode="others-of-baseline"/>
  <xsl:template match="node()" mode="others-of-baseline"><xsl:copy-of select="."/></xsl:template>

  <!-- Resources and assignments -->

  <xsl:template match="ms:Resource">
    <xsl:call-template name="in-order"><xsl:with-param name="order" select="$resource-order"/></xsl:call-template>
  </xsl:template>

  <xsl:template match="ms:Resource/ms:Name">
    <xsl:variable name="name" select="translate(., ',[]', ';()')"/>
    <xsl:copy><xsl:value-of select="$name"/></xsl:copy>
    <xsl:if test="$name != .">
      <xsl:message>
        <xsl:value-of select="concat('resource ', ../ms:UID, ': &quot;', ., '&quot; is now &quot;', $name, '&quot;')"/>
      </xsl:message>
    </xsl:if>
  </xsl:template>

  <xsl:template match="ms:Assignment">
    <xsl:variable name="done" select="key('done-task', ms:TaskUID)[1]"/>
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:copy-of select="ms:UID"/>
      <xsl:copy-of select="ms:TaskUID"/>
      <xsl:copy-of select="ms:ResourceUID"/>
      <xsl:copy-of select="ms:PercentWorkComplete"/>
      <xsl:call-template name="actual-finish"><xsl:with-param name="done" select="$done"/></xsl:call-template>
      <xsl:call-template name="actual-start"><xsl:with-param name="done" select="$done"/></xsl:call-template>
      <xsl:copy-of select="ms:Finish[normalize-space()]"/>
      <xsl:copy-of select="ms:Milestone"/>
      <xsl:copy-of select="ms:RemainingWork"/>
      <xsl:copy-of select="ms:Start[normalize-space()]"/>
      <xsl:copy-of select="ms:Units"/>
      <xsl:copy-of select="ms:Work"/>
      <xsl:apply-templates select="ms:Baseline"/>
      <xsl:apply-templates select="ms:TimephasedData"/>
      <xsl:apply-templates select="* | comment() | processing-instruction()" mode="others-of-assignment"/>
    </xsl:copy>
  </xsl:template>
  <xsl:template match="ms:UID | ms:TaskUID | ms:ResourceUID | ms:PercentWorkComplete | ms:ActualFinish |
                       ms:ActualStart | ms:Finish | ms:Milestone | ms:RemainingWork | ms:Start | ms:Units |
                       ms:Work | ms:Baseline | ms:TimephasedData"
                mode="others-of-assignment"/>
  <xsl:template match="node()" mode="others-of-assignment"><xsl:copy-of select="."/></xsl:template>

  <xsl:template match="ms:TimephasedData">
    <xsl:call-template name="in-order"><xsl:with-param name="order" select="$timephased-order"/></xsl:call-template>
  </xsl:template>
</xsl:stylesheet>
